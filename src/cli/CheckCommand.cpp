#include <limits>
#include <set>
#include <vector>

#include <QDir>

#include "cli/Answers.h"
#include "cli/CheckIterator.h"
#include "cli/CommandArguments.h"
#include "cli/Commands.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/NamedFile.h"
#include "common/xmldomutils.h"
#include "document/catalogue/Definitions.h"
#include "template/TemplateLanguage.h"
#include "template/contracts/ContentGeneratorStringConverter.h"
#include "template/contracts/TemplateObserver.h"
#include "template/parser/CompoundTemplateSection.h"
#include "template/parser/ErrorPage.h"

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

    void OnIncludeRefused(const QString& name, uint64_t position) override
    {
        isRefused = true;
        Warn(Text(StringId::IncludeLeadsOut, name), position);
    }

    void OnCaseDiffers(const QString& name, uint64_t position) override
    {
        Warn(Text(StringId::CaseDiffers, name), position);
    }

    // A file lies where the page may not read.
    bool IsRefused() const { return isRefused; }

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
    bool isRefused = false;
    CFindingsPrinter& printer;
};

void BindPage(const CGalleryTemplate& layout, const CGalleryTemplatePage& page, CPageObserver& observer,
              CFindingsPrinter& printer)
{
    CCompoundTemplateSection tree;
    layout.LoadPage(page.file, tree, {.observer = &observer});
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
        return !observer.IsRefused();
    } catch (const CTemplateParsingException& error) {
        printer.Print({observer.GetFile(), GetErrorLine(error, observer.GetFile()), error.GetDescription()});
    } catch (const CExceptionBase& error) {
        printer.Print(
            {observer.GetFile(), 1, error.GetCaption() + QLatin1Char(' ') + error.GetDescription()});
    }
    return false;
}

// What a definition says of a file or folder. False if it can't be used.
class CNameCheck {
public:
    CNameCheck(const QString& definition, CFindingsPrinter& printer)
        : definition(definition), printer(printer)
    {}

    // unnamed: what to say if the definition names none.
    bool Check(const NamedFile& file, const QString& name, StringId unnamed)
    {
        if (name.isEmpty()) {
            printer.Print({definition, 1, Text(unnamed)});
            return false;
        }
        return Check(file, name);
    }

    bool Check(const NamedFile& file, const QString& name)
    {
        if (file.state == NamedFile::State::Found) {
            if (file.differsInCase) {
                printer.Print({definition, 1, Text(StringId::CaseDiffers, name)});
            }
            return true;
        }
        printer.Print({definition, 1,
                       file.state == NamedFile::State::LeadsOut ? Text(StringId::NameLeadsOut, name)
                                                                : Text(StringId::NamedFileMissing, name)});
        return false;
    }

private:
    const QString definition;
    CFindingsPrinter& printer;
};

bool CheckPages(const CGalleryTemplate& layout, CNameCheck names, CFindingsPrinter& printer)
{
    bool isGood = true;
    for (const CGalleryTemplatePage& page : layout.GetPages()) {
        const NamedFile file = layout.FindPageFile(page.file);
        // A missing one is told of by the attempt to read it.
        const bool isNamed = file.state == NamedFile::State::Missing || names.Check(file, page.file);
        isGood = isNamed && CheckPage(layout, page, printer) && isGood;
    }
    return isGood;
}

bool CheckTemplate(const QString& definition, CFindingsPrinter& printer)
{
    const CGalleryTemplate layout(QDir(definition).absolutePath());
    CNameCheck names(definition, printer);
    const NamedFile& folder = layout.GetNamedFolder();
    const QString folderName = ExtractLastName(folder.path);
    if (folder.state == NamedFile::State::LeadsOut || folder.differsInCase) {
        if (!names.Check(folder, folderName)) {
            return false;
        }
    }
    return CheckPages(layout, names, printer);
}

bool CheckStyle(const QString& definition, CFindingsPrinter& printer)
{
    const CGalleryStyle style(QDir(definition).absolutePath());
    CNameCheck names(definition, printer);
    return names.Check(style.namedFolder, style.folder, StringId::StyleNamesNoFolder) &&
           names.Check(style.sheet, style.css, StringId::StyleNamesNoSheet);
}

bool IsStyle(const QString& definition)
{
    const auto document = LoadDocument(QDir(definition).absolutePath());
    return document->FindAll("template").empty() && !document->FindAll("style").empty();
}

bool CheckDefinition(const QString& definition, CFindingsPrinter& printer)
{
    try {
        return IsStyle(definition) ? CheckStyle(definition, printer) : CheckTemplate(definition, printer);
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
        bad += CheckDefinition(definition, printer) ? 0 : 1;
    }
    if (bad == 0) {
        return ExitDone;
    }
    throw CGenericException(Text(StringId::LayoutsHaveErrors),
                            Text(StringId::BadLayoutsOfAll, bad, static_cast<int>(parsed.positional.size())),
                            Text(StringId::CorrectNamedLines));
}
