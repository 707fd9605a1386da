#include "template/parser/ErrorPage.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "common/Text.h"
#include "resources/Resources.h"
#include "template/parser/PageStream.h"
#include "template/parser/ReplaceAll.h"

namespace {

std::string ReadPage(const QString& pageFile)
{
    std::ifstream stream = OpenPageFile(pageFile);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

// The three runs of a page; the file may have become shorter since the error was found.
struct PageRuns {
    PageRuns(std::string_view page, const CTemplateParsingException& error)
    {
        const size_t start = std::min<uint64_t>(error.errorStart, page.size());
        const size_t end = std::clamp<uint64_t>(error.errorEnd, start, page.size());
        first = page.substr(0, start);
        failed = page.substr(start, end - start);
        last = page.substr(end);
    }

    std::string_view first;
    std::string_view failed;
    std::string_view last;
};

int LineAfter(std::string_view text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
}

std::string Escaped(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '"':
            result += "&quot;";
            break;
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case ' ':
            result += "&nbsp;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

} // namespace

std::string BuildErrorPage(const CTemplateParsingException& error, const QString& pageFile)
{
    const std::string page = ReadPage(pageFile);
    const PageRuns runs(page, error);
    std::string result =
        FindPage(QStringLiteral("error_page"), {StringId::ErrorPageHeading, StringId::ErrorPageDescription,
                                                StringId::ErrorPageFile, StringId::ErrorPageLine})
            .toStdString();
    // In this order, since a text that was put in is searched for the placeholders after it.
    ReplaceAll(result, "%error_description%", Narrow(error.GetDescription()));
    ReplaceAll(result, "%template_file%", Narrow(pageFile));
    ReplaceAll(result, "%line_number%", std::to_string(LineAfter(runs.first)));
    ReplaceAll(result, "%first_part%", Escaped(runs.first));
    ReplaceAll(result, "%error_part%", Escaped(runs.failed));
    ReplaceAll(result, "%last_part%", Escaped(runs.last));
    return result;
}

int GetPageLine(uint64_t position, const QString& pageFile)
{
    const std::string page = ReadPage(pageFile);
    return LineAfter(std::string_view(page).substr(0, std::min<uint64_t>(position, page.size())));
}

int GetErrorLine(const CTemplateParsingException& error, const QString& pageFile)
{
    return GetPageLine(error.errorStart, pageFile);
}
