#include "shell/panes/folder/ViewFolderImageIterator.h"

#include "document/galleries/Gallery.h"

void CViewFolderImageIterator::SetCollection()
{
    hiddenPictures.clear();
    indexByPath.clear();
    for (size_t i = 0; i < collection.size(); ++i) {
        indexByPath.emplace(collection[i]->GetPath(), static_cast<int32_t>(i));
    }
    Reset();
}

void CViewFolderImageIterator::SetGallery(const CGallery* gallery)
{
    hiddenPictures.clear();
    for (const QString& key : KeysOfPictures(gallery)) {
        const int32_t hidden = FindIndex(key);
        if (hidden >= 0) {
            HidePicture(hidden);
        }
    }
}

int32_t CViewFolderImageIterator::FindIndex(const QString& path) const
{
    const auto entry = indexByPath.find(path);
    return entry != indexByPath.end() ? entry->second : -1;
}

void CViewFolderImageIterator::Reset()
{
    index = 0;
    SkipHidden();
}

void CViewFolderImageIterator::NextPicture()
{
    ++index;
    SkipHidden();
}

void CViewFolderImageIterator::SkipHidden()
{
    while (HasPicture() && IsHidden(index)) {
        ++index;
    }
}

bool CViewFolderImageIterator::HasPicture() const
{
    return index < GetPictureCount();
}

QString CViewFolderImageIterator::GetPicturePath(QString& out)
{
    out = HasPicture() ? collection[static_cast<size_t>(index)]->GetThumbnailPath() : QString();
    return out;
}

CPictureInfo* CViewFolderImageIterator::GetCurrentPicture() const
{
    return HasPicture() ? collection[static_cast<size_t>(index)].get() : nullptr;
}

std::set<QString> KeysOfPictures(const CGallery* gallery)
{
    std::set<QString> keys;
    const int32_t count = gallery ? gallery->GetPictures().GetCount() : 0;
    for (int32_t i = 0; i < count; ++i) {
        keys.insert(gallery->GetPictures().GetAt(i)->GetKey());
    }
    return keys;
}
