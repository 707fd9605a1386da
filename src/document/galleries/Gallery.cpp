#include "document/galleries/Gallery.h"

#include <algorithm>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "document/links/GalleryVariables.h"
#include "template/parser/TemplateParsingException.h"

namespace {

bool IsChild(const CPictureInfo* record)
{
    return dynamic_cast<const CGalleryPictureInfo*>(record) != nullptr;
}

} // namespace

CGallery::CGallery(CGalleryManager& manager, const CGalleryCatalogue& catalogue, int32_t index)
    : CGalleryContent(catalogue, index), manager(manager), cover(index, GetPictures(), manager)
{}

void CGallery::SetTemplate(const QString& path)
{
    CGalleryLayout& layout = GetLayout();
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
    const CGalleryLayout& layout = GetLayout();
    const CGalleryTemplate* const oldTemplate = before.GetTemplate();
    const CGalleryTemplate* const newTemplate = layout.GetTemplate();
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
    for (const auto& [key, candidate] : GetLayout().GetCatalogue().GetTemplates()) {
        const auto& pages = candidate.GetPages();
        if (std::any_of(pages.begin(), pages.end(), [](const auto& page) { return page.multipage; })) {
            SetTemplate(key);
            return;
        }
    }
}

int32_t CGallery::GetPicturesPerPage(const CGalleryTemplate& layoutTemplate, const QString& page)
{
    const CGalleryTemplatePage& record = layoutTemplate.GetPage(page);
    if (record.picturesPerPage != 0 || record.isBeingCounted) {
        return record.picturesPerPage;
    }
    record.isBeingCounted = true;
    try {
        record.picturesPerPage = manager.CountPictures(*this, layoutTemplate, record.file);
    } catch (const CTemplateParsingException&) {
        record.picturesPerPage = 0;
    } catch (...) {
        record.isBeingCounted = false;
        throw;
    }
    record.isBeingCounted = false;
    return record.picturesPerPage;
}

void CGallery::SetCurrentPicture(int32_t position)
{
    CGalleryLayout& layout = GetLayout();
    const CGalleryTemplate* const layoutTemplate = layout.GetTemplate();
    const int32_t perPage =
        layoutTemplate ? GetPicturesPerPage(*layoutTemplate, layout.GetTemplatePage()) : 0;
    layout.SetPageNumber(perPage > 0 && position > 0 ? position / perPage : 0);
}

std::vector<QString> CGallery::GetStyleDirectories() const
{
    std::vector<QString> directories;
    const auto addOnce = [&](const QString& directory) {
        if (!directory.isEmpty() &&
            std::none_of(directories.begin(), directories.end(),
                         [&](const QString& other) { return EqualsIgnoreCase(directory, other); })) {
            directories.push_back(directory);
        }
    };
    for (const QString& directory : GetLayout().GetStyleDirectories()) {
        addOnce(directory);
    }
    addOnce(manager.GetProgramFolder() + QStringLiteral("Styles/Common"));
    return directories;
}

AddedPicture CGallery::AddPicture(const QString& path)
{
    return AddFile({.path = path, .angle = 0, .atFront = GetLayout().IsAddedAtFront()});
}

AddedPicture CGallery::AppendPicture(const QString& path, int32_t angle)
{
    return AddFile({.path = path, .angle = angle, .atFront = false});
}

AddedPicture CGallery::AddFile(const NewFile& file)
{
    // A cover is shown through its gallery's entry, which must not be replaced by a plain picture.
    if (IsChild(GetPictures().FindRecord(file.path))) {
        return {};
    }
    const AddedPicture added = GetPictures().AddFile(file.path, file.angle, file.atFront);
    if (added.isNew) {
        UpdateCover(PositionOfAdded(added.record));
    }
    return added;
}

void CGallery::RemovePicture(int32_t position)
{
    const CPictureInfo* const record = GetPictures().GetAt(position);
    if (!record) {
        return;
    }
    if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(record)) {
        manager.RemoveGallery(child->GetGalleryIndex());
        return;
    }
    GetPictures().Remove(position);
    UpdateCover(position);
}

void CGallery::MovePicture(int32_t a, int32_t b)
{
    if (GetPictures().GetAt(a) && GetPictures().GetAt(b)) {
        GetPictures().Swap(a, b);
        UpdateCover(std::min(a, b));
    }
}

void CGallery::ReorderPictures(const std::vector<int32_t>& order)
{
    GetPictures().Reorder(order);
    UpdateCover(0);
}

std::vector<std::unique_ptr<CPictureInfo>> CGallery::TakePictures(const std::vector<int32_t>& positions)
{
    std::vector<int32_t> files;
    std::copy_if(positions.begin(), positions.end(), std::back_inserter(files), [this](int32_t position) {
        return GetPictures().GetAt(position) && !IsChild(GetPictures().GetAt(position));
    });
    std::vector<std::unique_ptr<CPictureInfo>> taken = GetPictures().Remove(files);
    if (!files.empty()) {
        UpdateCover(*std::min_element(files.begin(), files.end()));
    }
    return taken;
}

bool CGallery::TakeOver(std::unique_ptr<CPictureInfo>& picture)
{
    if (GetPictures().FindRecord(picture->GetKey())) {
        return false;
    }
    const CPictureInfo* const record = GetPictures().Add(std::move(picture), GetLayout().IsAddedAtFront());
    GetPictures().CountDateOf(*record);
    UpdateCover(PositionOfAdded(record));
    return true;
}

void CGallery::RotatePicture(int32_t position, bool clockwise)
{
    CPictureInfo* const record = GetPictures().GetAt(position);
    if (!record) {
        return;
    }
    constexpr int32_t fullTurn = 4;
    GetPictures().SetAngle(*record, (record->GetAngle() + (clockwise ? 1 : fullTurn - 1)) % fullTurn);
    UpdateCover(position);
}

void CGallery::MakeChildFromPicture(int32_t position)
{
    CPictureList& pictures = GetPictures();
    if (!pictures.GetAt(position) || IsChild(pictures.GetAt(position))) {
        return;
    }
    std::unique_ptr<CPictureInfo> record = pictures.Remove(position);
    const int32_t childIndex = manager.AddGallery();
    const CGalleryPictureInfo* const entry = AddChild(childIndex);
    // The child's own cover is not made anew: it stays that of a new gallery until a later change.
    manager.GetGallery(childIndex)->GetPictures().Add(std::move(record), GetLayout().IsAddedAtFront());
    pictures.MoveTo(entry, position);
    UpdateCover(std::min(position, pictures.GetCount() - 1));
}

void CGallery::Restore(const GalleryState& wanted, const GalleryState& present)
{
    if (wanted.layout != present.layout) {
        GetLayout() = *wanted.layout;
    }
    if (wanted.pictures != present.pictures) {
        RestorePictures(*wanted.pictures);
    }
    if (wanted.texts != present.texts) {
        GetTexts() = *wanted.texts;
    }
    if (wanted.visibility != present.visibility) {
        GetVisibility().SetPages(*wanted.visibility);
    }
    if (wanted.stamps != present.stamps) {
        GetImageStamps() = wanted.stamps->images;
        GetTextStamps() = wanted.stamps->texts;
    }
    if (wanted.rests != present.rests) {
        GetRests() = *wanted.rests;
    }
}

void CGallery::BecomeCopyOf(const CGallery& other, const std::map<int32_t, int32_t>& copies)
{
    const GalleryState state = StateOf(other, {});
    PictureListState pictures = *state.pictures;
    for (PictureListState::Entry& entry : pictures.entries) {
        if (auto* const child = std::get_if<PictureListState::Child>(&entry)) {
            child->gallery = copies.at(child->gallery);
        }
    }
    GalleryState copy = state;
    copy.pictures = std::make_shared<const PictureListState>(std::move(pictures));
    Restore(copy, {});
    UpdateCover(0);
}

// A file may have come or gone since.
void CGallery::RestorePictures(const PictureListState& state)
{
    ForgetChildren();
    std::vector<std::unique_ptr<CPictureInfo>> entries;
    entries.reserve(state.entries.size());
    for (const PictureListState::Entry& entry : state.entries) {
        if (const auto* record = std::get_if<std::shared_ptr<const CFilePictureInfo>>(&entry)) {
            entries.push_back(std::make_unique<CFilePictureInfo>(**record));
        } else {
            entries.push_back(MakeChildEntry(std::get<PictureListState::Child>(entry)));
        }
    }
    ListAnew(std::move(entries));
    GetPictures().SetValues(state);
    GetPictures().LookForFiles();
}

std::unique_ptr<CGalleryPictureInfo> CGallery::MakeChildEntry(const PictureListState::Child& state)
{
    CGallery& child = *manager.FindGallery(state.gallery);
    CListedGallery& listed = child;
    auto entry = std::make_unique<CGalleryPictureInfo>(listed, state.gallery);
    entry->SetAngle(state.angle);
    entry->SetNameSuffix(state.nameSuffix);
    entry->SetRest(state.rest);
    child.parentIndexes.insert(GetIndex());
    return entry;
}

CGalleryPictureInfo* CGallery::AddChild(int32_t childIndex)
{
    if (CGalleryPictureInfo* known = FindChildPicture(childIndex)) {
        return known;
    }
    CGallery* const child = manager.FindGallery(childIndex);
    if (!child || child->IsAtOrAbove(*this)) {
        return nullptr;
    }
    CListedGallery& listed = *child;
    CGalleryPictureInfo* const entry = ListChild(std::make_unique<CGalleryPictureInfo>(listed, childIndex));
    child->parentIndexes.insert(GetIndex());
    UpdateCover(PositionOfAdded(entry));
    return entry;
}

// True if this is the gallery itself or any gallery above it, however they are linked.
bool CGallery::IsAtOrAbove(const CGallery& gallery) const
{
    if (!HasChildren()) {
        return this == &gallery;
    }
    std::set<const CGallery*> seen;
    std::vector<const CGallery*> open = {&gallery};
    while (!open.empty()) {
        const CGallery* const next = open.back();
        open.pop_back();
        if (next == this) {
            return true;
        }
        for (const int32_t parentIndex : next->parentIndexes) {
            const CGallery* const parent = manager.FindGallery(parentIndex);
            if (parent && seen.insert(parent).second) {
                open.push_back(parent);
            }
        }
    }
    return false;
}

std::optional<CGallery::ChildPlace> CGallery::FindChildPlace(int32_t childIndex) const
{
    const CGalleryPictureInfo* const entry = FindChildPicture(childIndex);
    return entry ? std::optional<ChildPlace>({.entry = {.gallery = childIndex,
                                                        .angle = entry->GetAngle(),
                                                        .nameSuffix = entry->GetNameSuffix(),
                                                        .rest = entry->GetRest()},
                                              .position = GetPictures().FindPosition(entry)})
                 : std::nullopt;
}

void CGallery::AddChild(const ChildPlace& place)
{
    const int32_t count = GetPictures().GetCount();
    const int32_t position = std::clamp(place.position, 0, count);
    const int32_t listedAt = GetPictures().FindPosition(ListChild(MakeChildEntry(place.entry)));
    std::vector<int32_t> order;
    for (int32_t old = 0; old <= count; ++old) {
        if (old != listedAt) {
            order.push_back(old);
        }
    }
    order.insert(order.begin() + position, listedAt);
    ReorderPictures(order);
}

void CGallery::RemoveChild(int32_t childIndex)
{
    if (const CGalleryPictureInfo* entry = FindChildPicture(childIndex)) {
        manager.FindGallery(childIndex)->parentIndexes.erase(GetIndex());
        UpdateCover(UnlistChild(*entry));
    }
}

void CGallery::ForgetChildren()
{
    for (const int32_t childIndex : GetChildren()) {
        manager.FindGallery(childIndex)->parentIndexes.erase(GetIndex());
    }
}

// A new record stands at one of the ends; only one that replaces another has to be looked for.
int32_t CGallery::PositionOfAdded(const CPictureInfo* record) const
{
    const CPictureList& pictures = GetPictures();
    const int32_t last = pictures.GetCount() - 1;
    if (pictures.GetAt(last) == record) {
        return last;
    }
    return pictures.GetAt(0) == record ? 0 : pictures.FindPosition(record);
}

std::optional<QString> CGallery::GetPageUrl(int32_t position, const QString& pageName)
{
    if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(GetPictures().GetAt(position))) {
        return GetChildUrl(*this, manager, child->GetGalleryIndex());
    }
    return FindPictureUrl(GetLayout(),
                          {.position = position, .pageName = pageName, .countPicturesPerPage = [&] {
                               return GetPicturesPerPage(*GetLayout().GetTemplate(), pageName);
                           }});
}

std::optional<CVariant> CGallery::GetObjectVariable(const QString& object, const QString& name)
{
    if (EqualsIgnoreCase(object, QStringLiteral("advertisement"))) {
        const QString& page = GetLayout().GetTemplatePage();
        if (!GetTexts().FindAdvertisement(page, name)) {
            GetTexts().advertisements[page][name] = QStringLiteral("");
        }
    }
    return CGalleryVariables(*this, manager).FindObjectVariable(object, name);
}

std::optional<CVariant> CGallery::GetPageVariable(const QString& pageName, int32_t pageNumber,
                                                  const QString& name) const
{
    return CGalleryVariables(*this, manager).FindPageVariable({pageName, pageNumber}, name);
}

CVariant CGallery::FindGalleryVariable(const QString& name) const
{
    return CGalleryVariables(*this, manager).FindGalleryVariable(name);
}

void CGallery::SetGalleryVariable(const QString& name, const CVariant& value)
{
    SetObjectVariable(QStringLiteral("gallery"), name, value);
}

bool CGallery::FollowLink(const QString& url, bool& styleChanged, bool& galleryChanged)
{
    if (NavigateToGallery(url)) {
        styleChanged = true;
        galleryChanged = true;
        return true;
    }
    const std::optional<bool> followed = FollowPageLink(*this, url);
    styleChanged = followed.value_or(false);
    return followed.has_value();
}

bool CGallery::NavigateToGallery(const QString& url)
{
    const std::optional<int32_t> index = FindGalleryOfUrl(url, manager.GetRootGalleryIndex());
    if (index) {
        manager.SetCurrentGallery(*index);
    }
    return index.has_value();
}
