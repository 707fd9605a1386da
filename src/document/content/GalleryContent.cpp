#include "document/content/GalleryContent.h"

#include <algorithm>

#include "common/Text.h"

const QString* GalleryTexts::FindAdvertisement(const QString& page, const QString& name) const
{
    const auto texts = advertisements.find(page);
    if (texts == advertisements.end()) {
        return nullptr;
    }
    const auto exact = texts->second.find(name);
    if (exact != texts->second.end()) {
        return &exact->second;
    }
    const auto other = std::find_if(texts->second.begin(), texts->second.end(),
                                    [&](const auto& text) { return EqualsIgnoreCase(text.first, name); });
    return other != texts->second.end() ? &other->second : nullptr;
}

bool CPageVisibility::Note(const QString& page, const QString& element)
{
    const bool visible = pages[page].try_emplace(element, true).first->second;
    seenElements[element] = visible;
    return visible;
}

void CPageVisibility::SetElements(const QString& page, const Elements& elements)
{
    for (const auto& [element, visible] : elements) {
        pages[page][element] = visible;
    }
    seenElements = elements;
}

void CPageVisibility::SetElement(const QString& page, const QString& element, bool visible)
{
    pages[page][element] = visible;
}

std::set<int32_t> CGalleryContent::GetChildren() const
{
    std::set<int32_t> children;
    for (const auto& [childIndex, entry] : childPictures) {
        children.insert(children.end(), childIndex);
    }
    return children;
}

const CGalleryPictureInfo* CGalleryContent::FindChildPicture(int32_t childIndex) const
{
    const auto found = childPictures.find(childIndex);
    return found != childPictures.end() ? found->second : nullptr;
}

CGalleryPictureInfo* CGalleryContent::FindChildPicture(int32_t childIndex)
{
    const auto found = childPictures.find(childIndex);
    return found != childPictures.end() ? found->second : nullptr;
}

CGalleryPictureInfo* CGalleryContent::ListChild(std::unique_ptr<CGalleryPictureInfo> entry)
{
    CGalleryPictureInfo* const listed = entry.get();
    pictures.Add(std::move(entry), layout.IsAddedAtFront());
    childPictures[listed->GetGalleryIndex()] = listed;
    return listed;
}

int32_t CGalleryContent::UnlistChild(const CGalleryPictureInfo& entry)
{
    childPictures.erase(entry.GetGalleryIndex());
    const int32_t position = pictures.FindPosition(&entry);
    pictures.Remove(position);
    return position;
}

void CGalleryContent::ListAnew(std::vector<std::unique_ptr<CPictureInfo>> entries)
{
    pictures.Clear();
    childPictures.clear();
    for (std::unique_ptr<CPictureInfo>& entry : entries) {
        if (auto* const child = dynamic_cast<CGalleryPictureInfo*>(entry.get())) {
            childPictures[child->GetGalleryIndex()] = child;
        }
        pictures.Add(std::move(entry), false);
    }
}

void CGalleryContent::SetObjectVariable(const QString& object, const QString& name, const CVariant& value)
{
    if (EqualsIgnoreCase(object, QStringLiteral("gallery"))) {
        texts.own.Set(name, value);
    } else if (EqualsIgnoreCase(object, QStringLiteral("content"))) {
        pictures.SetVariable(name, value);
    }
}

void CGalleryContent::SetPageVariable(const QString& pageName, int32_t pageNumber, const QString& name,
                                      const CVariant& value)
{
    texts.pages[{pageName, pageNumber}].Set(name, value);
}

std::optional<QString> CGalleryContent::FindOwnName() const
{
    for (const auto& name : {QStringLiteral("display_name"), QStringLiteral("name")}) {
        const std::optional<CVariant> value = texts.own.Find(name);
        if (value && value->GetType() == CVariant::Type::String) {
            return value->GetString();
        }
    }
    return std::nullopt;
}

void CGalleryContent::SetVisibilityMap(const CPageVisibility::Elements& map)
{
    visibility.SetElements(layout.GetTemplatePage(), map);
}

std::set<QString> CGalleryContent::GetWatermarks() const
{
    std::set<QString> paths;
    for (const CImageStampParams& stamp : imageStamps) {
        if (!stamp.file.isEmpty()) {
            paths.insert(stamp.file);
        }
    }
    return paths;
}

FileTrace CGalleryContent::GetWatermarkTrace(const QString& path) const
{
    const auto found = rests.watermarkTraces.find(path);
    return found != rests.watermarkTraces.end() ? found->second : FileTrace();
}

bool CGalleryContent::RelocateWatermark(const QString& oldPath, const QString& newPath)
{
    bool isFound = false;
    for (CImageStampParams& stamp : imageStamps) {
        if (stamp.file == oldPath && !oldPath.isEmpty()) {
            stamp.file = newPath;
            isFound = true;
        }
    }
    return isFound;
}
