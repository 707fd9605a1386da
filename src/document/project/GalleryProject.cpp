#include "document/project/GalleryProject.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

#include <QDir>
#include <QFileInfo>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/TempFolder.h"
#include "document/galleries/GalleryIterator.h"
#include "document/project/ProjectIdentity.h"

namespace {

CProjectEnvironment WithTrailingSeparators(CProjectEnvironment environment)
{
    environment.programFolder = WithTrailingSeparator(environment.programFolder);
    return environment;
}

QString AbsolutePathOf(const QString& path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

} // namespace

CGalleryProject::CGalleryProject(const CProjectEnvironment& environment)
    : environment(WithTrailingSeparators(environment)),
      settings(*environment.settings, CSettingsStore::Scope::User, QStringLiteral("Corvane/Vistorama"),
               {{QStringLiteral("RecentFoldersCount"), QStringLiteral("10")},
                {QStringLiteral("BannerServer"), QString()},
                {QStringLiteral("BannerFeed"), QString()}}),
      catalogue(this->environment.programFolder),
      coverCache(environment.covers)
{}

CGalleryProject::~CGalleryProject() = default;

void CGalleryProject::Open(const QString& path)
{
    SetName(path);
    if (FileExists(path)) {
        Load(path);
        SetName(path); // a file may name no folder
    } else {
        New();
        Save(path);
    }
}

void CGalleryProject::New()
{
    Clear();
    LoadTemplates();
    LoadStyles();
    if (environment.picturesFolder.isEmpty()) {
        throw CWin32Exception(ENOENT, Text(StringId::PicturesFolderNotFound));
    }
    AddFolder(environment.picturesFolder);
    CreateGallery(0);
    identity.id = MakeProjectId();
    loaded = true;
}

void CGalleryProject::Load(const QString& path)
{
    Clear();
    LoadTemplates(path);
    LoadStyles(path);
    const auto document = LoadDocument(path);
    try {
        ReadDocument(*document);
    } catch (const CExceptionBase&) {
        // Half a project must not be taken for a whole one.
        ClearContent();
        throw;
    }
    identity.path = AbsolutePathOf(path);
    loaded = true;
}

void CGalleryProject::Save(const QString& path)
{
    if (!loaded) {
        return;
    }
    if (!identity.readOnlyReason.isNull() && IsSameProjectFile(identity.path, path)) {
        throw CGenericException(Text(StringId::ProjectMayOnlyBeRead, path), identity.readOnlyReason,
                                Text(StringId::SaveUnderAnotherName));
    }
    const ProjectIdentity before = identity;
    const QString oldName = name;
    const QString oldDeployFolder = deploySettings.folder;
    try {
        BecomeFile(path);
        MakeDirectoryPath(AbsoluteFolderOf(path));
        const auto document = CreateDocument();
        WriteDocument(*document);
        document->Save(path);
    } catch (const CExceptionBase&) {
        identity = before;
        name = oldName;
        deploySettings.folder = oldDeployFolder;
        throw;
    }
}

// A project that has a file and is saved elsewhere becomes another one: what is known of the first by its id,
// its published files above all, stays with the first.
void CGalleryProject::BecomeFile(const QString& path)
{
    const bool isElsewhere = !identity.path.isEmpty() && !IsSameProjectFile(identity.path, path);
    if (isElsewhere) {
        identity = {};
    }
    if (identity.id.isEmpty()) {
        identity.id = MakeProjectId();
    }
    identity.path = AbsolutePathOf(path);
    SetName(path);
}

std::unique_ptr<CGalleryProject> CGalleryProject::MakeCopy(CTempFolder& tempFolder) const
{
    CProjectEnvironment copyEnvironment = environment;
    copyEnvironment.tempFolder = &tempFolder;
    auto copy = std::make_unique<CGalleryProject>(copyEnvironment);
    // The layouts and styles beside the project, too.
    const QString file =
        identity.path.isEmpty() ? tempFolder.GetPath() + QStringLiteral("project") : identity.path;
    copy->LoadTemplates(file);
    copy->LoadStyles(file);
    const auto document = CreateDocument(file);
    WriteDocument(*document);
    copy->ReadDocument(*document);
    copy->identity.path = identity.path;
    copy->name = name;
    copy->loaded = true;
    return copy;
}

void CGalleryProject::Clear()
{
    ClearContent();
    catalogue.Clear();
}

// Galleries go before the catalogue: they hold positions in it.
void CGalleryProject::ClearContent()
{
    loaded = false;
    identity = {};
    rests = {};
    absentWatermarks.clear();
    recentFolders.Clear();
    deploySettings = CDeploySettings();
    galleries.clear();
    currentGalleryIndex = 0;
    rootGalleryIndex = 0;
}

void CGalleryProject::SetName(const QString& path)
{
    name = CutAtFirstDot(ExtractLastName(path)).stem;
    if (deploySettings.folder.isEmpty()) {
        // Cut at the first dot anywhere, a folder's too.
        deploySettings.folder = CutAtFirstDot(path).stem;
    }
}

CGallery& CGalleryProject::CreateGallery(int32_t index)
{
    auto& gallery = galleries[index];
    if (!gallery) {
        gallery = std::make_unique<CGallery>(*this, catalogue, index);
    }
    return *gallery;
}

const CGallery* CGalleryProject::FindGallery(int32_t index) const
{
    const auto found = galleries.find(index);
    return found != galleries.end() ? found->second.get() : nullptr;
}

CGallery* CGalleryProject::FindGallery(int32_t index)
{
    const auto found = galleries.find(index);
    return found != galleries.end() ? found->second.get() : nullptr;
}

int32_t CGalleryProject::AddGallery()
{
    // Negative indexes stand only in hand-made files; -1 means "none" elsewhere.
    const int64_t afterLast = galleries.empty() ? 0 : int64_t{galleries.rbegin()->first} + 1;
    int64_t index = std::max<int64_t>(afterLast, 0);
    if (index > std::numeric_limits<int32_t>::max()) {
        index = 0;
        while (galleries.count(static_cast<int32_t>(index)) != 0) {
            ++index;
        }
    }
    return CreateGallery(static_cast<int32_t>(index)).GetIndex();
}

int32_t CGalleryProject::AddChildGallery(int32_t parentIndex)
{
    CGallery* const parent = FindGallery(parentIndex == -1 ? currentGalleryIndex : parentIndex);
    if (!parent) {
        return -1;
    }
    const int32_t newIndex = AddGallery();
    parent->AddChild(newIndex);
    return newIndex;
}

int32_t CGalleryProject::AddParentGallery(int32_t index)
{
    if (!FindGallery(index)) {
        return -1;
    }
    CGallery* const oldParent = GetParentGallery(index);
    const int32_t newIndex = AddGallery();
    CGallery& newParent = *FindGallery(newIndex);
    try {
        // Before any link is made, so that a bad layout leaves the tree as it was.
        newParent.SelectMultipageTemplate();
    } catch (const CExceptionBase&) {
        galleries.erase(newIndex);
        throw;
    }
    newParent.AddChild(index);
    if (oldParent) {
        oldParent->RemoveChild(index);
        oldParent->AddChild(newIndex);
    }
    if (rootGalleryIndex == index) {
        rootGalleryIndex = newIndex;
    }
    currentGalleryIndex = newIndex;
    return newIndex;
}

std::vector<int32_t> CGalleryProject::ListBelow(int32_t index) const
{
    std::vector<int32_t> below = {index};
    for (size_t i = 0; i < below.size(); ++i) {
        const CGallery* const gallery = FindGallery(below[i]);
        for (const int32_t child : gallery ? gallery->GetChildren() : std::set<int32_t>()) {
            below.push_back(child);
        }
    }
    return below;
}

bool CGalleryProject::MoveGallery(int32_t index, int32_t newParentIndex, int32_t position)
{
    CGallery* const oldParent = GetParentGallery(index);
    CGallery* const newParent = FindGallery(newParentIndex);
    const std::vector<int32_t> below = ListBelow(index);
    if (!oldParent || !newParent || std::count(below.begin(), below.end(), newParentIndex) != 0) {
        return false;
    }
    const CGallery::ChildPlace place = *oldParent->FindChildPlace(index);
    // It leaves its own place first.
    const bool isLater = newParent == oldParent && place.position < position;
    oldParent->RemoveChild(index);
    newParent->AddChild({.entry = place.entry, .position = isLater ? position - 1 : position});
    return true;
}

// From the bottom up, so that each finds its children.
int32_t CGalleryProject::DuplicateGallery(int32_t index)
{
    CGallery* const parent = GetParentGallery(index);
    if (!parent) {
        return -1;
    }
    const std::vector<int32_t> originals = ListBelow(index);
    std::map<int32_t, int32_t> copies;
    for (const int32_t original : originals) {
        copies[original] = AddGallery();
    }
    for (auto original = originals.rbegin(); original != originals.rend(); ++original) {
        FindGallery(copies[*original])->BecomeCopyOf(*FindGallery(*original), copies);
    }
    CGallery::ChildPlace place = *parent->FindChildPlace(index);
    place.entry.gallery = copies[index];
    ++place.position;
    parent->AddChild(place);
    return copies[index];
}

void CGalleryProject::RemoveGallery(int32_t index)
{
    CGallery* const gallery = FindGallery(index);
    if (!gallery) {
        return;
    }
    const std::set<int32_t> children = gallery->GetChildren();
    if (index == rootGalleryIndex) {
        if (children.size() != 1) {
            return;
        }
        rootGalleryIndex = *children.begin();
    } else {
        MoveChildrenUp(*gallery);
    }
    EraseGallery(index);
    if (currentGalleryIndex == index) {
        currentGalleryIndex = rootGalleryIndex;
    }
}

void CGalleryProject::MoveChildrenUp(CGallery& gallery)
{
    CGallery* const parent = gallery.GetParent();
    if (!parent) {
        return;
    }
    parent->RemoveChild(gallery.GetIndex());
    for (const int32_t child : gallery.GetChildren()) {
        parent->AddChild(child);
    }
}

// No gallery may keep an entry or a parent that is gone.
void CGalleryProject::EraseGallery(int32_t index)
{
    CGallery& gallery = *FindGallery(index);
    const std::set<int32_t> parents = gallery.GetParentIndexes();
    for (const int32_t parent : parents) {
        FindGallery(parent)->RemoveChild(index);
    }
    gallery.ForgetChildren();
    galleries.erase(index);
}

void CGalleryProject::SetCurrentGallery(int32_t index)
{
    if (FindGallery(index)) {
        currentGalleryIndex = index;
    }
}

int32_t CGalleryProject::GetGalleryIndex(const CGallery* gallery) const
{
    const auto found = std::find_if(galleries.begin(), galleries.end(), [&](const auto& entry) {
        return entry.second && entry.second.get() == gallery;
    });
    return found != galleries.end() ? found->first : -1;
}

std::optional<int32_t> CGalleryProject::FindParentIndex(int32_t index) const
{
    const CGallery* const gallery = FindGallery(index);
    if (!gallery || index == rootGalleryIndex || gallery->GetParentIndexes().empty()) {
        return std::nullopt;
    }
    return *gallery->GetParentIndexes().begin();
}

CGallery* CGalleryProject::GetParentGallery(int32_t index)
{
    const std::optional<int32_t> parent = FindParentIndex(index);
    return parent ? FindGallery(*parent) : nullptr;
}

const CGalleryContent* CGalleryProject::FindParentContent(int32_t index) const
{
    const std::optional<int32_t> parent = FindParentIndex(index);
    return parent ? FindGallery(*parent) : nullptr;
}

CGalleryCover* CGalleryProject::FindCover(int32_t galleryIndex)
{
    CGallery* const gallery = FindGallery(galleryIndex);
    return gallery ? &gallery->GetCover() : nullptr;
}

CGalleryCover* CGalleryProject::FindParentCover(int32_t galleryIndex)
{
    const std::optional<int32_t> parent = FindParentIndex(galleryIndex);
    return parent ? FindCover(*parent) : nullptr;
}

int32_t CGalleryProject::CountPictures(CGallery& gallery, const CGalleryTemplate& layout, const QString& page)
{
    return ::CountPictures(gallery, layout, page);
}

bool CGalleryProject::AddFolder(const QString& path)
{
    return recentFolders.Add(path, settings.GetDWord(QStringLiteral("RecentFoldersCount")));
}

QString CGalleryProject::GetBannerServer() const
{
    return settings.GetString(QStringLiteral("BannerServer"));
}

QString CGalleryProject::GetBannerFeed() const
{
    return settings.GetString(QStringLiteral("BannerFeed"));
}

bool CGalleryProject::LookForFiles()
{
    bool isNews = false;
    for (const auto& [index, gallery] : galleries) {
        if (!gallery) {
            continue;
        }
        if (gallery->GetPictures().LookForFiles()) {
            gallery->UpdateCover(0);
            isNews = true;
        }
        isNews = gallery->GetCover().LookForChanges() || isNews;
    }
    return LookForWatermarks() || isNews;
}

bool CGalleryProject::LookForWatermarks()
{
    std::set<QString> absent;
    for (const auto& [index, gallery] : galleries) {
        for (const QString& path : gallery ? gallery->GetWatermarks() : std::set<QString>()) {
            if (!IsFile(path)) {
                absent.insert(path);
            }
        }
    }
    return std::exchange(absentWatermarks, absent) != absent;
}
