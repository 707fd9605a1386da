#include <algorithm>

#include "common/FileSystem.h"
#include "common/Text.h"
#include "document/project/GalleryElement.h"
#include "document/project/GalleryProject.h"

// How a project is read from its file and written: the part of CGalleryProject that knows XML.

namespace {

constexpr int32_t KnownMajorVersion = 2;
const QString OwnVersion = QStringLiteral("2.0");

int32_t MajorVersionOf(const QString& version)
{
    return ParseInteger(Narrow(version));
}

bool IsGalleryProject(const CXmlElement& root)
{
    return root.GetTag() == QStringLiteral("project") &&
           (root.FindChild("gallery") || root.FindChild("picture_list"));
}

// Null for a file that may be written: what this version would write can't lose what it doesn't understand.
QString ReadOnlyReasonOf(const CXmlElement& root)
{
    const QString version = GetAttributeText(root, "version").GetString();
    if (MajorVersionOf(version) > KnownMajorVersion) {
        return Text(StringId::ProjectOfNewerVersion, version);
    }
    return IsGalleryProject(root) ? QString() : Text(StringId::NoGalleryProject, root.GetTag());
}

// The indexes of the galleries. One that is no number becomes a free one, so that its pictures don't end up
// in another gallery.
std::vector<int32_t> IndexesOf(const std::vector<CXmlElement>& galleries)
{
    std::vector<int32_t> indexes;
    std::vector<size_t> unreadable;
    int32_t last = 0;
    for (const CXmlElement& gallery : galleries) {
        const std::optional<int32_t> index = FindAttributeLong(gallery, "index");
        if (!index && !GetAttributeText(gallery, "index").IsEmpty()) {
            unreadable.push_back(indexes.size());
        }
        indexes.push_back(index.value_or(0));
        last = std::max(last, indexes.back());
    }
    for (const size_t place : unreadable) {
        indexes[place] = last < std::numeric_limits<int32_t>::max() ? ++last : 0;
    }
    return indexes;
}

} // namespace

void CGalleryProject::ReadDocument(CXmlDocument& document)
{
    const CXmlElement root = document.GetRoot();
    const QString id = GetAttributeText(root, "id").GetString();
    identity.id = IsProjectId(id) ? id : QString();
    identity.version = GetAttributeText(root, "version").GetString();
    identity.readOnlyReason = ReadOnlyReasonOf(root);
    ReadFolders(document);
    ReadGalleries(document);
    FindFilesAgain(AbsoluteFolderOf(document.GetPath()));
    for (CGallery* gallery : ChildrenBeforeParents()) {
        gallery->GetCover().Release();
    }
    deploySettings.Read(root);
    rests.deploySettings = CXmlRest(root.FindChild("deploy_settings"),
                                    {{"folder", "destination_kind", "redeploy_mode", "ftp_destination",
                                      "ftp_directory", "open_browser_after_deploy"},
                                     {}});
}

void CGalleryProject::ReadFolders(CXmlDocument& document)
{
    const uint32_t maxCount = settings.GetDWord(QStringLiteral("RecentFoldersCount"));
    for (const CXmlElement& folder : document.FindAll("folder")) {
        const QString path = GetAttributeText(folder, "path").GetString();
        if (!path.isEmpty()) {
            recentFolders.Add(path, maxCount);
        }
    }
    if (const CXmlElement folders = document.GetRoot().FindChild("project_folders")) {
        SetRecentFolder(GetAttributeText(folders, "recent_folder").GetString());
        rests.folders = CXmlRest(folders, {{"recent_folder"}, {"folder"}});
        for (const CXmlElement& folder : folders.GetChildren("folder")) {
            rests.folders.KeepPart(folder, {{"path"}, {}}, {"path"});
        }
    }
}

// The covers are held until every picture has its path.
void CGalleryProject::ReadGalleries(CXmlDocument& document)
{
    const CXmlElement root = document.GetRoot();
    const QString folder = AbsoluteFolderOf(document.GetPath());
    rootGalleryIndex = FindAttributeLong(root, "root_gallery_index").value_or(0);
    currentGalleryIndex = FindAttributeLong(root, "current_gallery_index").value_or(0);
    const std::vector<CXmlElement> elements = root.GetChildren("gallery");
    if (elements.empty()) {
        // A file of the single-gallery kind: the root itself is the element of the one gallery.
        currentGalleryIndex = rootGalleryIndex;
        CGallery& gallery = CreateGallery(rootGalleryIndex);
        gallery.GetCover().Hold();
        ReadGallery(gallery, root, {folder, GalleryElementKind::WholeProject});
        return;
    }
    rests.root = CXmlRest(root, NamesOfProject());
    const std::vector<int32_t> indexes = IndexesOf(elements);
    // Parents name their children by index, so that all galleries have to be there before the first is read.
    for (const int32_t index : indexes) {
        CreateGallery(index).GetCover().Hold();
    }
    if (!FindGallery(rootGalleryIndex)) {
        rootGalleryIndex = galleries.begin()->first;
    }
    if (!FindGallery(currentGalleryIndex)) {
        currentGalleryIndex = rootGalleryIndex;
    }
    for (size_t place = 0; place < elements.size(); ++place) {
        ReadGallery(*FindGallery(indexes[place]), elements[place], {folder});
    }
}

void CGalleryProject::FindFilesAgain(const QString& folder)
{
    QStringList folders = {folder};
    for (const QString& recent : GetFolders()) {
        folders += recent;
    }
    const CAbsentFileSearch search(GetAbsentFiles(), GetPresentFiles());
    Relocate(search.FindByItself(folders));
    LookForWatermarks();
}

void CGalleryProject::WriteDocument(CXmlDocument& document) const
{
    CXmlElement root = document.CreateRoot("project");
    // A newer one of the same kind stays: what it has told is kept.
    root.SetAttribute("version",
                      MajorVersionOf(identity.version) == KnownMajorVersion ? identity.version : OwnVersion);
    root.SetAttribute("root_gallery_index", rootGalleryIndex);
    root.SetAttribute("current_gallery_index", currentGalleryIndex);
    root.SetAttribute("id", identity.id);
    CXmlElement folders = root.AppendChild("project_folders");
    folders.SetAttribute("recent_folder", GetRecentFolder());
    for (const QString& path : GetFolders()) {
        folders.AppendChild("folder").SetAttribute("path", path);
    }
    rests.folders.WriteTo(folders);
    const QString folder = AbsoluteFolderOf(identity.path);
    for (const auto& [index, gallery] : galleries) {
        if (gallery) {
            WriteGallery(*gallery, root, folder);
        }
    }
    CXmlElement deployment = deploySettings.Write(root);
    rests.deploySettings.WriteTo(deployment);
    rests.root.WriteTo(root);
}

// All galleries there are, each after its children.
std::vector<CGallery*> CGalleryProject::ChildrenBeforeParents()
{
    std::vector<CGallery*> ordered;
    for (const auto& [index, gallery] : galleries) {
        if (gallery && gallery->GetParentIndexes().empty()) {
            ordered.push_back(gallery.get());
        }
    }
    for (size_t i = 0; i < ordered.size(); ++i) {
        for (const int32_t child : ordered[i]->GetChildren()) {
            ordered.push_back(FindGallery(child));
        }
    }
    std::reverse(ordered.begin(), ordered.end());
    return ordered;
}
