#include "template/sections/TemplateSectionInclude.h"

#include <QDir>

#include "common/NamedFile.h"
#include "common/Text.h"
#include "template/contracts/ImageIterator.h"
#include "template/contracts/TemplateObserver.h"
#include "template/parser/PageStream.h"
#include "template/parser/TemplateParsingException.h"

namespace {

const AttributeTable IncludeTable = {OtherAttributes::Kept, {{"file", 1}}};

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
    const QString path = FindFile(folder.GetString(), name);
    CountLoad(path);
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

// Empty for one that the page may not read.
QString CTemplateSectionInclude::FindFile(const QString& folder, const QString& name) const
{
    const bool isBound = context.page && !context.page->folder.isEmpty();
    const NamedFile file = FindNamedFile(folder, name, isBound ? context.page->folder : QDir::rootPath());
    if (context.observer && file.state == NamedFile::State::LeadsOut) {
        context.observer->OnIncludeRefused(name, bodyStart);
    } else if (context.observer && file.differsInCase) {
        context.observer->OnCaseDiffers(name, bodyStart);
    }
    return file.state == NamedFile::State::LeadsOut ? QString() : file.path;
}

void CTemplateSectionInclude::CountLoad(const QString& path) const
{
    if (context.includes >= MaxDepth) {
        throw IncludeTooDeepError(path, MaxDepth);
    }
    if (context.page && ++context.page->loads > MaxLoads) {
        throw TooManyIncludesError(path, MaxLoads);
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
