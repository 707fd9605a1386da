#include "document/galleries/Gallery.h"

#include <algorithm>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "document/galleries/GalleryIterator.h"
#include "document/galleries/GalleryLinks.h"
#include "document/galleries/GalleryTree.h"
#include "document/pictures/GalleryPictureInfo.h"
#include "template/contracts/ContentGeneratorStringConverter.h"
#include "template/parser/CompoundTemplateSection.h"
#include "template/parser/TemplateParsingException.h"

namespace {

bool IsChild(const CPictureInfo* record)
{
    return dynamic_cast<const CGalleryPictureInfo*>(record) != nullptr;
}

} // namespace

CGallery::CGallery(CGalleryManager& manager, CGalleryCatalogue& catalogue, int32_t index)
    : manager(manager), index(index), layout(catalogue), variables(*this), cover(*this)
{}

void CGallery::SetTemplate(const QString& path)
{
    const CGalleryLayout before = layout;
    try {
        if (layout.ChooseTemplate(path)) {
            layout.SetPageNumber(ScaledPageNumber(before));
        }
    } catch (const CExceptionBase&) {
        layout = before;
        throw;
    }
}

// The page number at which the new page shows the picture that the old one showed.
int32_t CGallery::ScaledPageNumber(const CGalleryLayout& before)
{
    CGalleryTemplate* const oldTemplate = before.GetTemplate();
    CGalleryTemplate* const newTemplate = layout.GetTemplate();
    if (!oldTemplate || !oldTemplate->HasPage(before.GetTemplatePage()) ||
        !newTemplate->HasPage(layout.GetTemplatePage())) {
        return 0;
    }
    const int64_t newPerPage = GetPicturesPerPage(*newTemplate, layout.GetTemplatePage());
    if (newPerPage == 0) {
        return before.GetPageNumber();
    }
    int64_t oldPerPage = 0;
    try {
        oldPerPage = GetPicturesPerPage(*oldTemplate, before.GetTemplatePage());
    } catch (const CFileException&) {
        // A layout whose page file has gone must not keep its gallery.
    }
    const int64_t scaled = (before.GetPageNumber() * oldPerPage + newPerPage / 2) / newPerPage;
    return static_cast<int32_t>(std::min<int64_t>(scaled, INT32_MAX));
}

void CGallery::SelectMultipageTemplate()
{
    for (const auto& [key, candidate] : layout.GetCatalogue().GetTemplates()) {
        const auto& pages = candidate.GetPages();
        if (std::any_of(pages.begin(), pages.end(), [](const auto& page) { return page.multipage; })) {
            SetTemplate(key);
            return;
        }
    }
}

int32_t CGallery::GetPicturesPerPage(CGalleryTemplate& layoutTemplate, const QString& page)
{
    CGalleryTemplatePage& record = layoutTemplate.GetPage(page);
    if (record.picturesPerPage != 0 || record.isBeingCounted) {
        return record.picturesPerPage;
    }
    record.isBeingCounted = true;
    try {
        record.picturesPerPage = CountPictures(layoutTemplate, record.file);
    } catch (const CTemplateParsingException&) {
        record.picturesPerPage = 0;
    } catch (...) {
        record.isBeingCounted = false;
        throw;
    }
    record.isBeingCounted = false;
    return record.picturesPerPage;
}

int32_t CGallery::CountPictures(CGalleryTemplate& layoutTemplate, const QString& page)
{
    CCompoundTemplateSection tree;
    layoutTemplate.LoadPage(page, tree);
    const DottedName name = CutAtFirstDot(page);
    CGalleryIterator iterator;
    // Both null would stand for the gallery's own page.
    iterator.Init(*this, name.stem, name.rest.isNull() ? QStringLiteral("") : name.rest, 0);
    iterator.Reset();
    CContentGeneratorStringConverter generator;
    tree.Bind(iterator, generator);
    return iterator.GetPicturesPerPage();
}

void CGallery::SetCurrentPicture(int32_t position)
{
    CGalleryTemplate* const layoutTemplate = layout.GetTemplate();
    const int32_t perPage =
        layoutTemplate ? GetPicturesPerPage(*layoutTemplate, layout.GetTemplatePage()) : 0;
    layout.SetPageNumber(perPage > 0 && position > 0 ? position / perPage : 0);
}

std::vector<QString> CGallery::GetStyleDirectories()
{
    std::vector<QString> directories;
    const auto addOnce = [&](const QString& directory) {
        if (std::none_of(directories.begin(), directories.end(),
                         [&](const QString& other) { return EqualsIgnoreCase(directory, other); })) {
            directories.push_back(directory);
        }
    };
    for (const QString& directory : layout.GetStyleDirectories()) {
        addOnce(directory);
    }
    addOnce(manager.GetProgramFolder() + QStringLiteral("Styles/Common"));
    return directories;
}

CPictureInfo* CGallery::AddPicture(const QString& path)
{
    return AddFile({.path = path, .angle = 0, .atFront = layout.IsAddedAtFront()});
}

CPictureInfo* CGallery::AppendPicture(const QString& path, int32_t angle)
{
    return AddFile({.path = path, .angle = angle, .atFront = false});
}

CPictureInfo* CGallery::AddFile(const NewFile& file)
{
    // A cover is shown through its gallery's entry, which must not be replaced by a plain picture.
    if (IsChild(pictures.FindRecord(file.path))) {
        return nullptr;
    }
    CPictureInfo* const record = pictures.AddFile(file.path, file.angle, file.atFront);
    UpdateCover(PositionOfAdded(record));
    return record;
}

void CGallery::RemovePicture(int32_t position)
{
    const CPictureInfo* const record = pictures.GetAt(position);
    if (!record) {
        return;
    }
    if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(record)) {
        manager.RemoveGallery(child->GetGalleryIndex());
        return;
    }
    pictures.Remove(position);
    UpdateCover(position);
}

void CGallery::MovePicture(int32_t a, int32_t b)
{
    if (pictures.GetAt(a) && pictures.GetAt(b)) {
        pictures.Swap(a, b);
        UpdateCover(std::min(a, b));
    }
}

void CGallery::RotatePicture(int32_t position, bool clockwise)
{
    CPictureInfo* const record = pictures.GetAt(position);
    if (!record) {
        return;
    }
    constexpr int32_t fullTurn = 4;
    record->SetAngle((record->GetAngle() + (clockwise ? 1 : fullTurn - 1)) % fullTurn);
    UpdateCover(position);
}

void CGallery::MakeChildFromPicture(int32_t position)
{
    if (!pictures.GetAt(position) || IsChild(pictures.GetAt(position))) {
        return;
    }
    std::unique_ptr<CPictureInfo> record = pictures.Remove(position);
    const int32_t childIndex = manager.AddGallery();
    const CGalleryPictureInfo* const entry = AddChild(childIndex);
    // The child's own cover is not made anew: it stays that of a new gallery until a later change.
    manager.GetGallery(childIndex)->pictures.Add(std::move(record), layout.IsAddedAtFront());
    pictures.MoveTo(entry, position);
    UpdateCover(std::min(position, pictures.GetCount() - 1));
}

CGalleryPictureInfo* CGallery::AddChild(int32_t childIndex)
{
    if (CGalleryPictureInfo* listed = FindChildPicture(childIndex)) {
        return listed;
    }
    CGallery* const child = manager.FindGallery(childIndex);
    if (!child || IsAtOrAbove(*child, *this)) {
        return nullptr;
    }
    auto record = std::make_unique<CGalleryPictureInfo>(*child, childIndex);
    CGalleryPictureInfo* const entry = record.get();
    pictures.Add(std::move(record), layout.IsAddedAtFront());
    childPictures[childIndex] = entry;
    child->parentIndexes.insert(index);
    UpdateCover(PositionOfAdded(entry));
    return entry;
}

void CGallery::RemoveChild(int32_t childIndex)
{
    CGalleryPictureInfo* const entry = FindChildPicture(childIndex);
    if (!entry) {
        return;
    }
    entry->GetGallery().parentIndexes.erase(index);
    childPictures.erase(childIndex);
    const int32_t position = pictures.FindPosition(entry);
    pictures.Remove(position);
    UpdateCover(position);
}

std::set<int32_t> CGallery::GetChildren() const
{
    std::set<int32_t> children;
    for (const auto& [childIndex, entry] : childPictures) {
        children.insert(children.end(), childIndex);
    }
    return children;
}

CGalleryPictureInfo* CGallery::FindChildPicture(int32_t childIndex) const
{
    const auto found = childPictures.find(childIndex);
    return found != childPictures.end() ? found->second : nullptr;
}

void CGallery::ForgetChildren()
{
    for (const auto& [childIndex, entry] : childPictures) {
        entry->GetGallery().parentIndexes.erase(index);
    }
}

// A new record stands at one of the ends; only one that replaces another has to be looked for.
int32_t CGallery::PositionOfAdded(const CPictureInfo* record) const
{
    const int32_t last = pictures.GetCount() - 1;
    if (pictures.GetAt(last) == record) {
        return last;
    }
    return pictures.GetAt(0) == record ? 0 : pictures.FindPosition(record);
}

QString CGallery::GetDisplayName()
{
    return variables.GetDisplayName();
}

QString CGallery::GetParentPath()
{
    return ::GetParentPath(*this);
}

bool CGallery::GetPageUrl(int32_t position, const QString& pageName, QString& url)
{
    return ::GetPageUrl(*this, {.position = position, .pageName = pageName}, url);
}

bool CGallery::GetObjectVariable(const QString& object, const QString& name, CVariant& out)
{
    return variables.GetObjectVariable(object, name, out);
}

void CGallery::SetObjectVariable(const QString& object, const QString& name, const CVariant& value)
{
    variables.SetObjectVariable(object, name, value);
}

bool CGallery::GetPageVariable(const QString& pageName, int32_t pageNumber, const QString& name,
                               CVariant& out)
{
    return variables.GetPageVariable({pageName, pageNumber}, name, out);
}

void CGallery::SetPageVariable(const QString& pageName, int32_t pageNumber, const QString& name,
                               const CVariant& value)
{
    variables.SetPageVariable({pageName, pageNumber}, name, value);
}

bool CGallery::FollowLink(const QString& url, bool& styleChanged, bool& galleryChanged)
{
    return ::FollowLink(*this, url, {styleChanged, galleryChanged});
}

bool CGallery::NavigateToGallery(const QString& url)
{
    return ::NavigateToGallery(manager, url);
}

void CGallery::SetVisibilityMap(const CPageVisibility::Elements& map)
{
    visibility.SetElements(layout.GetTemplatePage(), map);
}

bool CGallery::IsElementVisibleOnPage(const QString& name)
{
    return visibility.IsVisible(layout.GetTemplatePage(), name);
}
