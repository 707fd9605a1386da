#include "template/sections/TemplateSectionBlog.h"

#include <algorithm>
#include <limits>

#include "template/contracts/ImageIterator.h"
#include "template/parser/TemplateParsingException.h"

namespace {

constexpr int64_t EntryCount = 11;
constexpr int64_t EntriesBefore = 5; // as many as after the current one

// The position after the last entry of a run. Odd on purpose: the run keeps its length at the start of a
// gallery but does not shift back at its end, so that the last page shows 6 entries.
int64_t EndOfRun(int64_t current)
{
    return current > EntriesBefore ? current + EntriesBefore + 1 : EntryCount;
}

// A page number comes from a link, unchecked.
CVariant Clamped(int64_t number)
{
    return CVariant(static_cast<int32_t>(std::clamp<int64_t>(number, std::numeric_limits<int32_t>::min(),
                                                             std::numeric_limits<int32_t>::max())));
}

QString PageObject()
{
    return QStringLiteral("page");
}

} // namespace

CScopedPageVariable::CScopedPageVariable(CImageIterator& iterator, const QString& name, const CVariant& value)
    : name(name), iterator(iterator)
{
    iterator.GetVariable(PageObject(), name, saved);
    iterator.SetVariable(PageObject(), name, value);
}

CScopedPageVariable::~CScopedPageVariable()
{
    iterator.SetVariable(PageObject(), name, saved);
}

void CTemplateSectionBlog::Clear()
{
    body.Clear();
}

void CTemplateSectionBlog::Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out)
{
    CBlogGenerator processor(out);
    RunLoop(iterator, generator, processor);
}

void CTemplateSectionBlog::AddSection(const char* name, std::unique_ptr<CTemplateSection> section)
{
    body.AddSection(name, std::move(section));
}

void CTemplateSectionBlog::Bind(CImageIterator& iterator, CContentGenerator& generator)
{
    CBlogBinder processor;
    RunLoop(iterator, generator, processor);
}

void CTemplateSectionBlog::SetContext(const TemplateContext& newContext)
{
    CCompoundTemplateSectionWithClosingBracket::SetContext(newContext);
    if (++context.loops > MaxDepth) {
        throw LoopsTooDeepError(MaxDepth);
    }
}

// Counts against the pictures of the gallery, not against its pages.
void CTemplateSectionBlog::RunLoop(CImageIterator& iterator, CContentGenerator& generator,
                                   CBlogProcessor& processor)
{
    const int64_t current = iterator.GetPageIndex();
    const int64_t end = EndOfRun(current);
    for (int64_t i = end - EntryCount; i < end && i < iterator.GetPictureCount() && !context.IsStopped();
         ++i) {
        const CScopedPageVariable index(iterator, QStringLiteral("blog_index"), Clamped(i));
        const CScopedPageVariable reference(iterator, QStringLiteral("blog_reference"), Clamped(i - current));
        const CScopedPageVariable number(iterator, QStringLiteral("blog_number"), Clamped(i + 1));
        processor.Process(iterator, generator, body);
    }
}
