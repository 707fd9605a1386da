#include "PageRun.h"

#include <sstream>

#include "template/TemplateLanguage.h"

Page ParsePage(const std::string& bytes)
{
    std::istringstream stream(bytes);
    auto root = std::make_unique<CCompoundTemplateSection>();
    ParsePage(stream, *root);
    return root;
}

std::string GeneratePage(CTemplateSection& root, CTestIterator& iterator, int32_t pageIndex)
{
    CRecordingGenerator generator;
    iterator.SetPageIndex(pageIndex);
    iterator.Reset();
    root.Bind(iterator, generator);
    iterator.SetPageIndex(pageIndex);
    return root.GenerateToString(iterator, generator);
}

std::string Generated(const std::string& bytes, CTestIterator& iterator, int32_t pageIndex)
{
    try {
        return GeneratePage(*ParsePage(bytes), iterator, pageIndex);
    } catch (const CTemplateParsingException& error) {
        return "ERROR " + Narrow(error.GetDescription());
    }
}

std::string Generated(const std::string& bytes)
{
    CTestIterator iterator;
    return Generated(bytes, iterator);
}

std::string ParseError(const std::string& bytes)
{
    try {
        ParsePage(bytes);
        return "no error";
    } catch (const CTemplateParsingException& error) {
        EXPECT_LE(error.errorEnd, bytes.size());
        EXPECT_LE(error.errorStart, error.errorEnd);
        return Narrow(error.GetDescription()) + " [" +
               bytes.substr(error.errorStart, error.errorEnd - error.errorStart) + "]";
    }
}
