#include "cli/CheckCommand.h"

#include <limits>

#include <QDir>

#include "cli/CommandLine.h"
#include "common/Exceptions.h"
#include "common/xmldomutils.h"
#include "document/GalleryTemplate.h"
#include "template/CompoundTemplateSection.h"
#include "template/ErrorPage.h"

namespace {

struct LayoutError {
    QString file;
    int line = 1;
    QString text;
};

void Print(const LayoutError& error)
{
    QString text = error.text;
    PrintOut(QStringLiteral("%1:%2: %3\n")
                 .arg(error.file)
                 .arg(error.line)
                 .arg(text.replace(QLatin1Char('\n'), QLatin1Char(' '))));
}

// Prints the page's error, if it has one. The parser stops at the first.
bool CheckPage(const CGalleryTemplate& layout, const QString& page)
{
    const QString path = layout.GetPageFilePath(page);
    try {
        CCompoundTemplateSection tree;
        layout.LoadPage(page, tree);
        return true;
    } catch (const CTemplateParsingException& error) {
        Print({path, GetErrorLine(error, path), error.GetDescription()});
    } catch (const CExceptionBase& error) {
        Print({path, 1, error.GetCaption() + QLatin1Char(' ') + error.GetDescription()});
    }
    return false;
}

bool CheckLayout(const QString& definition)
{
    try {
        const CGalleryTemplate layout(QDir(definition).absolutePath());
        bool isGood = true;
        for (const CGalleryTemplatePage& page : layout.GetPages()) {
            isGood = CheckPage(layout, page.file) && isGood;
        }
        return isGood;
    } catch (const CXmlException& error) {
        Print({definition, error.GetLine(), error.GetReason()});
    } catch (const CExceptionBase& error) {
        Print({definition, 1, error.GetDescription()});
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
    int bad = 0;
    for (const QString& definition : parsed.positional) {
        bad += CheckLayout(definition) ? 0 : 1;
    }
    if (bad == 0) {
        return ExitDone;
    }
    throw CGenericException(Text(StringId::LayoutsHaveErrors),
                            Text(StringId::BadLayoutsOfAll, bad, static_cast<int>(parsed.positional.size())),
                            Text(StringId::CorrectNamedLines));
}
