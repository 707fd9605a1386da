#include "cli/CheckCommand.h"

#include <limits>
#include <set>
#include <vector>

#include <QDir>

#include "cli/CheckIterator.h"
#include "cli/CommandLine.h"
#include "common/Exceptions.h"
#include "common/xmldomutils.h"
#include "document/catalogue/Definitions.h"
#include "template/contracts/ContentGeneratorStringConverter.h"
#include "template/contracts/TemplateObserver.h"
#include "template/parser/ErrorPage.h"
#include "template/sections/CompoundTemplateSection.h"

namespace {

struct Finding {
    QString file;
    int line = 1;
    QString text;
};

// Prints what was found, each finding once: files that many pages include are checked with each of them.
class CFindingsPrinter {
public:
    void Print(const Finding& finding)
    {
        QString text = finding.text;
        const QString line = QStringLiteral("%1:%2: %3\n")
                                 .arg(QDir::cleanPath(finding.file))
                                 .arg(finding.line)
                                 .arg(text.replace(QLatin1Char('\n'), QLatin1Char(' ')));
        if (printed.insert(line).second) {
            PrintOut(line);
        }
    }

private:
    std::set<QString> printed;
};

// Prints warnings of one page and of the files that it includes, and knows which of them is in work.
class CPageObserver final : public CTemplateObserver {
public:
    CPageObserver(const QString& page, CFindingsPrinter& printer) : files({page}), printer(printer) {}

    const QString& GetFile() const { return files.back(); }

    void OnIncludeBegin(const QString& path) override { files.push_back(path); }
    void OnIncludeEnd() override { files.pop_back(); }

    void OnAttributeKept(const std::string& name, uint64_t position) override
    {
        Warn(Text(StringId::AttributeNeverRead, name.c_str()), position);
    }

    void OnPictureBound(const QString& id, uint64_t position) override
    {
        if (!ids.insert(Lower(id)).second) {
            Warn(Text(StringId::IdBoundTwice, id), position);
        }
    }

private:
    void Warn(const QString& text, uint64_t position)
    {
        printer.Print({GetFile(), GetPageLine(position, GetFile()), text});
    }

    std::vector<QString> files; // the page, and the files that include one another up to the one in work
    std::set<QString> ids;
    CFindingsPrinter& printer;
};

void BindPage(const CGalleryTemplate& layout, const CGalleryTemplatePage& page, CPageObserver& observer,
              CFindingsPrinter& printer)
{
    CCompoundTemplateSection tree;
    tree.SetDepth({.observer = &observer});
    layout.LoadPage(page.file, tree);
    CCheckIterator iterator(layout.GetFolder());
    CContentGeneratorStringConverter generator;
    tree.Bind(iterator, generator);
    if (page.multipage && iterator.GetPicturesPerPage() == 0) {
        printer.Print({observer.GetFile(), 1, Text(StringId::NoPlaceForPictures)});
    }
}

// Prints the page's error, if it has one, and its warnings. The parser stops at the first error.
bool CheckPage(const CGalleryTemplate& layout, const CGalleryTemplatePage& page, CFindingsPrinter& printer)
{
    CPageObserver observer(layout.GetPageFilePath(page.file), printer);
    try {
        BindPage(layout, page, observer, printer);
        return true;
    } catch (const CTemplateParsingException& error) {
        printer.Print({observer.GetFile(), GetErrorLine(error, observer.GetFile()), error.GetDescription()});
    } catch (const CExceptionBase& error) {
        printer.Print(
            {observer.GetFile(), 1, error.GetCaption() + QLatin1Char(' ') + error.GetDescription()});
    }
    return false;
}

bool CheckLayout(const QString& definition, CFindingsPrinter& printer)
{
    try {
        const CGalleryTemplate layout(QDir(definition).absolutePath());
        bool isGood = true;
        for (const CGalleryTemplatePage& page : layout.GetPages()) {
            isGood = CheckPage(layout, page, printer) && isGood;
        }
        return isGood;
    } catch (const CXmlException& error) {
        printer.Print({definition, error.GetLine(), error.GetReason()});
    } catch (const CExceptionBase& error) {
        printer.Print({definition, 1, error.GetDescription()});
    }
    return false;
}

} // namespace

int RunCheck(const QStringList& arguments)
{
    const CommandArguments parsed =
        ParseArguments(arguments, {.valueOptions = {},
                                   .switches = {},
                                   .minPositional = 1,
                                   .maxPositional = std::numeric_limits<qsizetype>::max()});
    CFindingsPrinter printer;
    int bad = 0;
    for (const QString& definition : parsed.positional) {
        bad += CheckLayout(definition, printer) ? 0 : 1;
    }
    if (bad == 0) {
        return ExitDone;
    }
    throw CGenericException(Text(StringId::LayoutsHaveErrors),
                            Text(StringId::BadLayoutsOfAll, bad, static_cast<int>(parsed.positional.size())),
                            Text(StringId::CorrectNamedLines));
}
