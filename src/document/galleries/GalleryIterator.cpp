#include "document/galleries/GalleryIterator.h"

#include <algorithm>
#include <limits>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "document/galleries/Gallery.h"
#include "effects/ImageEffect.h"
#include "effects/ImageEffectGraphicsStamp.h"
#include "effects/ImageEffectTextStamp.h"
#include "template/contracts/ContentGeneratorStringConverter.h"
#include "template/parser/CompoundTemplateSection.h"

namespace {

// Page numbers come from links, and offsets from layouts, unchecked.
int32_t Clamped(int64_t number)
{
    return static_cast<int32_t>(std::clamp<int64_t>(number, std::numeric_limits<int32_t>::min(),
                                                    std::numeric_limits<int32_t>::max()));
}

// False, and out as it was, if there is no value.
bool Store(const std::optional<CVariant>& value, CVariant& out)
{
    if (value) {
        out = *value;
    }
    return value.has_value();
}

} // namespace

void CGalleryIterator::Init(CGallery& newGallery, const QString& baseName, const QString& extension,
                            int32_t newPageIndex)
{
    gallery = &newGallery;
    const CGalleryLayout& layout = gallery->GetLayout();
    const bool isNamed = !baseName.isNull() || !extension.isNull();
    pageBaseName = isNamed ? baseName : layout.GetPageBaseName();
    pageExtension = isNamed ? extension : layout.GetPageExtension();
    pageIndex = isNamed ? newPageIndex : layout.GetPageNumber();
    fileStem = pageBaseName + QString::number(pageIndex) + pageExtension + gallery->GetQueryString();
    cursor = 0;
    gallery->GetVisibility().ClearSeenElements();
    MakeStampEffects();
}

// The text lies above the watermark.
void CGalleryIterator::MakeStampEffects()
{
    for (size_t sizeClass = 0; sizeClass < stampEffects.size(); ++sizeClass) {
        const auto effects = std::make_shared<CImageEffectCompound>();
        const CImageStampParams& image = gallery->GetImageStamps()[sizeClass];
        if (!image.file.isEmpty()) {
            effects->Add(std::make_shared<CImageEffectGraphicsStamp>(image));
        }
        const CTextStampParams& text = gallery->GetTextStamps()[sizeClass];
        if (!text.text.isEmpty()) {
            effects->Add(std::make_shared<CImageEffectTextStamp>(text));
        }
        stampEffects[sizeClass] = effects;
    }
}

void CGalleryIterator::Reset()
{
    bindings.clear();
    boundIds.clear();
    cursor = 0;
    referenceCount = 0;
}

void CGalleryIterator::Bind(const QString& id, Binding binding)
{
    const QString key = Lower(id);
    if (bindings.try_emplace(key, binding).second) {
        ++(binding.isReference ? referenceCount : cursor);
    }
    boundIds.push_back(key);
}

void CGalleryIterator::BindPicture(const QString& id)
{
    Bind(id, {.offset = cursor, .modulo = 0, .isReference = false});
}

void CGalleryIterator::BindPictureReference(const QString& id, int32_t offset, int32_t modulo)
{
    Bind(id, {.offset = offset, .modulo = modulo, .isReference = true});
}

int32_t CGalleryIterator::GetPicturesPerPage() const
{
    return static_cast<int32_t>(bindings.size()) - referenceCount;
}

int32_t CGalleryIterator::GetPictureIndex(int32_t offset, int32_t modulo) const
{
    int64_t index = static_cast<int64_t>(GetPicturesPerPage()) * pageIndex;
    if (modulo != 0) {
        index -= index % modulo;
    }
    return Clamped(index + offset);
}

int32_t CGalleryIterator::FindPictureIndex(const QString& id) const
{
    const auto binding = bindings.find(Lower(id));
    if (binding == bindings.end()) {
        return -1;
    }
    const int32_t index = GetPictureIndex(binding->second.offset, binding->second.modulo);
    return index >= 0 && index < gallery->GetPictures().GetCount() ? index : -1;
}

CPictureInfo* CGalleryIterator::GetCurrentPicture() const
{
    if (cursor < 0 || static_cast<size_t>(cursor) >= boundIds.size()) {
        return nullptr;
    }
    return gallery->GetPictures().GetAt(FindPictureIndex(boundIds[static_cast<size_t>(cursor)]));
}

bool CGalleryIterator::HasPicture() const
{
    return GetCurrentPicture() != nullptr;
}

QString CGalleryIterator::GetPicturePath(QString& out)
{
    CPictureInfo* const picture = GetCurrentPicture();
    out = picture ? picture->GetPath() : QString();
    return out;
}

void CGalleryIterator::PreparePictures()
{
    std::vector<CGalleryCover*> covers;
    for (const auto& [id, binding] : bindings) {
        const CPictureInfo* const picture = gallery->GetPictures().GetAt(FindPictureIndex(id));
        if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(picture);
            child && !binding.isReference) {
            covers.push_back(gallery->GetManager().FindCover(child->GetGalleryIndex()));
        }
    }
    CGalleryCover::MakeAll(covers);
}

int32_t CGalleryIterator::GetPictureCount() const
{
    return gallery->GetPictures().GetCount();
}

int32_t CGalleryIterator::GetPageCount() const
{
    const int32_t perPage = GetPicturesPerPage();
    // One page for each full set and one for the rest; written so that nothing can overflow.
    return perPage == 0 ? 0 : GetPictureCount() / perPage + (GetPictureCount() % perPage != 0 ? 1 : 0);
}

bool CGalleryIterator::IsLastPage() const
{
    return (static_cast<int64_t>(pageIndex) + 1) * GetPicturesPerPage() >= GetPictureCount();
}

void CGalleryIterator::SetPageIndex(int32_t page)
{
    pageIndex = page;
    cursor = 0;
}

QString CGalleryIterator::GetPageFileName(int32_t page) const
{
    return pageBaseName + (page != 0 ? QString::number(page) : QString()) + pageExtension;
}

bool CGalleryIterator::IsElementVisible(const QString& name)
{
    return gallery->IsElementVisible(pageBaseName + pageExtension, name);
}

bool CGalleryIterator::GetPageProperty(int32_t pageNumber, const QString& name, CVariant& out)
{
    return Store(gallery->GetPageVariable(pageBaseName, pageNumber, name), out);
}

std::optional<CVariant> CGalleryIterator::FindOwnPageVariable(const QString& name)
{
    const QString property = Lower(name);
    if (property == QStringLiteral("number")) {
        return CVariant(Clamped(static_cast<int64_t>(pageIndex) + 1));
    }
    if (property == QStringLiteral("total_pages_count")) {
        return CVariant(GetPageCount());
    }
    if (property == QStringLiteral("index")) {
        return CVariant(pageIndex);
    }
    if (property == QStringLiteral("file_name")) {
        return CVariant(GetPageFileName(pageIndex));
    }
    if (property == QStringLiteral("file_name_base")) {
        return CVariant(pageBaseName);
    }
    return gallery->GetPageVariable(pageBaseName, pageIndex, name);
}

bool CGalleryIterator::GetVariable(const QString& object, const QString& name, CVariant& out)
{
    if (name.isNull()) {
        return false;
    }
    if (object.isNull()) {
        out = CVariant(Text(StringId::ObjectNameMissing));
        return false;
    }
    if (EqualsIgnoreCase(object, QStringLiteral("page"))) {
        return Store(FindOwnPageVariable(name), out);
    }
    if (bindings.count(Lower(object)) != 0) {
        return GetPictureProperty(FindPictureIndex(object), name, out);
    }
    if (Store(gallery->GetObjectVariable(object, name), out)) {
        return true;
    }
    out = CVariant(Text(StringId::InvalidObjectName, object));
    return false;
}

bool CGalleryIterator::GetPictureProperty(int32_t index, const QString& name, CVariant& out)
{
    const CPictureInfo* const picture = gallery->GetPictures().GetAt(index);
    if (!picture) {
        return false;
    }
    if (!name.startsWith(QLatin1Char('#'))) {
        return Store(picture->GetVariable(name), out);
    }
    if (const auto url = gallery->GetPageUrl(index, name.mid(1))) {
        out = CVariant(*url);
    }
    // Odd on purpose: callers take the URL and do not look at the answer.
    return false;
}

void CGalleryIterator::SetVariable(const QString& object, const QString& name, const CVariant& value)
{
    if (object.isNull() || name.isNull()) {
        return;
    }
    if (EqualsIgnoreCase(object, QStringLiteral("page"))) {
        gallery->SetPageVariable(pageBaseName, pageIndex, name, value);
    } else if (bindings.count(Lower(object)) != 0) {
        if (CPictureInfo* picture = gallery->GetPictures().GetAt(FindPictureIndex(object))) {
            picture->SetVariable(name, value);
        }
    } else {
        gallery->SetObjectVariable(object, name, value);
    }
}

namespace {

// What is counted isn't shown: the elements that a page asks about meanwhile are not the person's to choose,
// and those of the page that is shown stay noted.
class CVisibilityGuard {
public:
    explicit CVisibilityGuard(CPageVisibility& visibility) : visibility(visibility), before(visibility) {}
    ~CVisibilityGuard() { visibility = before; }
    CVisibilityGuard(const CVisibilityGuard&) = delete;
    CVisibilityGuard& operator=(const CVisibilityGuard&) = delete;

private:
    CPageVisibility& visibility;
    const CPageVisibility before;
};

} // namespace

int32_t CountPictures(CGallery& gallery, const CGalleryTemplate& layout, const QString& page)
{
    CCompoundTemplateSection tree;
    layout.LoadPage(page, tree);
    const DottedName name = CutAtFirstDot(page);
    const CVisibilityGuard guard(gallery.GetVisibility());
    CGalleryIterator iterator;
    iterator.Init(gallery, name.stem, name.rest, 0);
    iterator.Reset();
    CContentGeneratorStringConverter generator;
    tree.Bind(iterator, generator);
    return iterator.GetPicturesPerPage();
}
