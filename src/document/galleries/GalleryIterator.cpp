#include "document/galleries/GalleryIterator.h"

#include <algorithm>
#include <limits>

#include "common/Exceptions.h"
#include "document/galleries/Gallery.h"
#include "document/pictures/GalleryPictureInfo.h"
#include "effects/ImageEffect.h"
#include "effects/ImageEffectGraphicsStamp.h"
#include "effects/ImageEffectTextStamp.h"

namespace {

// Page numbers come from links, and offsets from layouts, unchecked.
int32_t Clamped(int64_t number)
{
    return static_cast<int32_t>(std::clamp<int64_t>(number, std::numeric_limits<int32_t>::min(),
                                                    std::numeric_limits<int32_t>::max()));
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
    return index >= 0 && index < GetPictureCount() ? index : -1;
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
    std::vector<CGallery*> children;
    for (const auto& [id, binding] : bindings) {
        CPictureInfo* const picture = gallery->GetPictures().GetAt(FindPictureIndex(id));
        if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(picture);
            child && !binding.isReference) {
            children.push_back(&child->GetGallery());
        }
    }
    CGalleryCover::MakeAll(children);
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
    return gallery->IsElementVisibleOnPage(name);
}

bool CGalleryIterator::GetPageProperty(int32_t pageNumber, const QString& name, CVariant& out)
{
    return gallery->GetPageVariable(pageBaseName, pageNumber, name, out);
}

bool CGalleryIterator::GetOwnPageVariable(const QString& name, CVariant& out)
{
    const QString property = Lower(name);
    if (property == QStringLiteral("number")) {
        out = CVariant(Clamped(static_cast<int64_t>(pageIndex) + 1));
    } else if (property == QStringLiteral("total_pages_count")) {
        out = CVariant(GetPageCount());
    } else if (property == QStringLiteral("index")) {
        out = CVariant(pageIndex);
    } else if (property == QStringLiteral("file_name")) {
        out = CVariant(GetPageFileName(pageIndex));
    } else if (property == QStringLiteral("file_name_base")) {
        out = CVariant(pageBaseName);
    } else {
        return gallery->GetPageVariable(pageBaseName, pageIndex, name, out);
    }
    return true;
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
        return GetOwnPageVariable(name, out);
    }
    if (bindings.count(Lower(object)) != 0) {
        return GetPictureProperty(FindPictureIndex(object), name, out);
    }
    if (gallery->GetObjectVariable(object, name, out)) {
        return true;
    }
    out = CVariant(Text(StringId::InvalidObjectName, object));
    return false;
}

bool CGalleryIterator::GetPictureProperty(int32_t index, const QString& name, CVariant& out)
{
    CPictureInfo* const picture = gallery->GetPictures().GetAt(index);
    if (!picture) {
        return false;
    }
    if (!name.startsWith(QLatin1Char('#'))) {
        return picture->GetVariable(name, out);
    }
    QString url;
    if (gallery->GetPageUrl(index, name.mid(1), url)) {
        out = CVariant(url);
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
