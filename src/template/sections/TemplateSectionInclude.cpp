#include "template/sections/TemplateSectionInclude.h"

#include "common/FileSystem.h"
#include "common/Text.h"
#include "template/contracts/ImageIterator.h"
#include "template/contracts/TemplateObserver.h"
#include "template/parser/PageStream.h"
#include "template/parser/TemplateParsingException.h"

namespace {

const AttributeTable IncludeTable = {OtherAttributes::Kept, {{"file", 1}}};

// The path of a file of the layout. A layout made elsewhere may have "\" in its names.
QString FindIncludedFile(const QString& folder, const QString& name)
{
    const QString literal = JoinPath(folder, name);
    if (FileExists(literal)) {
        return literal;
    }
    QString native = name;
    return JoinPath(folder, native.replace(QLatin1Char('\\'), QLatin1Char('/')));
}

} // namespace

CTemplateSectionInclude::CTemplateSectionInclude() : CTemplateSectionElement(IncludeTable) {}

void CTemplateSectionInclude::Clear()
{
    CTemplateSectionElement::Clear();
    content.Clear();
    loaded = false;
}

void CTemplateSectionInclude::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                       std::ostream& out)
{
    content.Generate(iterator, generator, out);
}

void CTemplateSectionInclude::Bind(CImageIterator& iterator, CContentGenerator& generator)
{
    // Odd on purpose: a second Bind leaves the content unbound, and layouts are written for that.
    if (!loaded) {
        loaded = true; // before anything can fail: what failed once isn't tried again
        Load(iterator, generator);
    }
}

void CTemplateSectionInclude::Load(CImageIterator& iterator, CContentGenerator& generator)
{
    const QString name = Widen(Evaluate("file", iterator, generator));
    CVariant folder;
    if (!iterator.GetVariable(QStringLiteral("gallery"), QStringLiteral("template_directory"), folder) ||
        folder.GetString().isEmpty()) {
        return; // without the layout's folder the name would be looked for in the root of the disk
    }
    const QString path = FindIncludedFile(folder.GetString(), name);
    if (context.includes >= MaxDepth) {
        throw IncludeTooDeepError(path, MaxDepth);
    }
    std::ifstream stream = OpenPageFile(path);
    if (context.observer) {
        context.observer->OnIncludeBegin(path);
    }
    ParseContent(stream);
    content.Bind(iterator, generator);
    if (context.observer) {
        context.observer->OnIncludeEnd();
    }
}

void CTemplateSectionInclude::ParseContent(std::istream& stream)
{
    TemplateContext contentContext = context;
    ++contentContext.includes;
    content.SetContext(contentContext);
    try {
        content.Parse(stream);
    } catch (...) {
        content.Clear(); // a failed parse leaves no partial result
        throw;
    }
}
