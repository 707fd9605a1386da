#include "document/content/GalleryContent.h"

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

bool CGalleryContent::IsElementVisibleOnPage(const QString& name)
{
    return visibility.Note(layout.GetTemplatePage(), name);
}
