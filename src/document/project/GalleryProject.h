#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include <QString>

#include "common/Settings.h"
#include "common/xmldomutils.h"
#include "document/catalogue/GalleryCatalogue.h"
#include "document/cover/CoverCache.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryManager.h"
#include "document/project/AbsentFiles.h"
#include "document/project/DeploySettings.h"
#include "document/project/ProjectIdentity.h"
#include "document/project/ProjectState.h"
#include "document/project/RecentFolders.h"

// What a project needs of the machine that it is opened on. The pointers are borrowed, are not null and
// outlive the project.
struct CProjectEnvironment {
    QString programFolder;  // holds Templates, Styles and banner.swf; with or without a trailing separator
    QString picturesFolder; // the user's own; the first folder of a new project
    CSettingsStore* settings = nullptr;
    CTempFolder* tempFolder = nullptr; // takes the covers
    CCoverCache::Options covers = {};  // where they are kept between runs
};

// The document: one project, a tree of galleries, with the layouts and styles that they choose from. Owned by
// the program's frame for as long as it runs. Main thread, or the one thread that generates pages while
// nobody changes the document.
//
// After a failed Load or New the project holds no gallery and IsLoaded is false: GetCurrentGallery and
// GetRootGallery are null until another Load or New succeeds.
class CGalleryProject final : public CGalleryManager {
public:
    explicit CGalleryProject(const CProjectEnvironment& environment);
    ~CGalleryProject() override;
    CGalleryProject(const CGalleryProject&) = delete;
    CGalleryProject& operator=(const CGalleryProject&) = delete;

    // --- Files.

    // Loads the file, or makes a new project and saves it there if there is no such file. Throws what Load,
    // New and Save throw.
    void Open(const QString& path);
    // Throws CWin32Exception if the system names no pictures folder, and what bad definitions throw.
    void New();
    // Throws CUnexpectedException for a file that is not well-formed, and what bad definitions throw. The
    // file is never touched. Pictures and watermarks whose files are not there are looked for, and stay.
    void Load(const QString& path);
    // Makes the folder if need be and replaces the file as a whole. Nothing happens in a project that is not
    // loaded. Throws CWin32Exception, and CGenericException for a file that may only be read, with project
    // and old file unchanged.
    void Save(const QString& path);
    void Clear();
    // 32 hexadecimal digits by which the project is known whatever its file is called. Made by New, and anew
    // when the project is saved under another path. Empty for a file of an older version until it is saved.
    const QString& GetId() const { return identity.id; }
    // Why the project can't be saved to the file that it was read from; null if it can. Such a project can be
    // saved under another path.
    const QString& GetReadOnlyReason() const { return identity.readOnlyReason; }
    // Of its file, absolute; empty before it has one.
    const QString& GetPath() const { return identity.path; }
    // Another project with the same content, which knows the same file and is never saved: for a run that has
    // to leave something out. tempFolder: takes its covers; borrowed.
    std::unique_ptr<CGalleryProject> MakeCopy(CTempFolder& tempFolder) const;
    bool IsLoaded() const { return loaded; }
    void LoadTemplates() { catalogue.LoadTemplates(); }
    void LoadTemplates(const QString& projectPath) { catalogue.LoadTemplates(projectPath); }
    void LoadStyles() { catalogue.LoadStyles(); }
    void LoadStyles(const QString& projectPath) { catalogue.LoadStyles(projectPath); }

    // --- Galleries.

    // Each listing is in ascending index order. An entry may be null, see CGalleryManager::GetGallery.
    const std::map<int32_t, std::unique_ptr<CGallery>>& GetGalleries() const { return galleries; }
    int32_t GetCurrentGalleryIndex() const { return currentGalleryIndex; }
    const CGallery* GetCurrentGallery() const { return FindGallery(currentGalleryIndex); }
    CGallery* GetCurrentGallery() { return FindGallery(currentGalleryIndex); }
    const CGallery* GetRootGallery() const { return FindGallery(rootGalleryIndex); }
    CGallery* GetRootGallery() { return FindGallery(rootGalleryIndex); }
    const CGallery* FindGallery(int32_t index) const;
    // -1: a child of the current gallery. Returns the new index, or -1 if there is no such parent.
    int32_t AddChildGallery(int32_t parentIndex);
    // Puts a new gallery, which becomes the current one, between the gallery and its parent. Returns its
    // index, or -1 if there is no such gallery. Throws what CGallery::SetTemplate throws.
    int32_t AddParentGallery(int32_t index);

    // A gallery goes to another parent, or to another place of its own, with all that lies below it: before
    // the entry of that position, or to the end. False, and nothing changed, for the root, and for a parent
    // that is the gallery itself or lies below it.
    bool MoveGallery(int32_t index, int32_t newParent, int32_t position);
    // A second one beside it, with all that lies below it. Returns its index, or -1 for the root and for a
    // gallery that isn't there.
    int32_t DuplicateGallery(int32_t index);
    // The gallery and all that lie below it, each before its children.
    std::vector<int32_t> ListBelow(int32_t index) const;

    // --- Moments, to come back to.

    // Of those galleries, there or not. former: an earlier state, which shares with the new one what has not
    // changed; an empty one will do.
    ProjectState GetState(const std::set<int32_t>& indexes, const ProjectState& former) const;
    // Changes what differs between the two states, which name the same galleries; present is that of now.
    // The person is back where they were, with the page of that time.
    void Restore(const ProjectState& wanted, const ProjectState& present);

    // --- Files of pictures and watermarks. See AbsentFiles.h.

    // Looks at all of them. True if one has come or gone since the last time, or if a cover shows one that
    // has changed.
    bool LookForFiles();
    std::vector<AbsentFile> GetAbsentFiles() const { return ListAbsentFiles(galleries); }
    std::set<QString> GetPresentFiles() const { return ListPresentFiles(galleries); }
    // Returns how many entries have moved.
    int32_t Relocate(const std::vector<FileMove>& moves) { return MoveFiles(galleries, moves); }

    // --- Folders, catalogue, settings.

    // False if the list has it already.
    bool AddFolder(const QString& path);
    bool RemoveFolder(const QString& path) { return recentFolders.Remove(path); }
    void SetRecentFolder(const QString& path) { recentFolders.Select(path); }
    const std::vector<QString>& GetFolders() const { return recentFolders.GetFolders(); }
    const QString& GetRecentFolder() const { return recentFolders.GetSelected(); }
    const CGalleryCatalogue& GetCatalogue() const { return catalogue; }
    // The layout of that key, else the first. Throws CUnexpectedException if there is none at all.
    const CGalleryTemplate& FindTemplate(const QString& key) const { return catalogue.FindTemplate(key); }
    void SetPreviewMode(bool isPreview) { previewMode = isPreview; }
    const CDeploySettings& GetDeploySettings() const { return deploySettings; }
    CDeploySettings& GetDeploySettings() { return deploySettings; }

    // --- CGalleryManager, with what the links and covers of its galleries see.

    CGallery* GetGallery(int32_t index) override { return galleries[index].get(); }
    CGallery* FindGallery(int32_t index) override;
    CGallery* GetParentGallery(int32_t index) override;
    int32_t GetGalleryIndex(const CGallery* gallery) const override;
    int32_t AddGallery() override;
    void RemoveGallery(int32_t index) override;
    void SetCurrentGallery(int32_t index) override;
    int32_t CountPictures(CGallery& gallery, const CGalleryTemplate& layout, const QString& page) override;

    bool IsPreviewMode() const override { return previewMode; }
    QString GetName() const override { return name; }
    int32_t GetRootGalleryIndex() const override { return rootGalleryIndex; }
    const CGalleryContent* FindContent(int32_t index) const override { return FindGallery(index); }
    const CGalleryContent* FindParentContent(int32_t index) const override;
    QString GetProgramFolder() const override { return environment.programFolder; }
    QString GetBannerServer() const override;
    QString GetBannerFeed() const override;

    CGalleryCover* FindCover(int32_t galleryIndex) override;
    CGalleryCover* FindParentCover(int32_t galleryIndex) override;
    const CTempFolder& GetTempFolder() const override { return *environment.tempFolder; }
    CCoverCache& GetCoverCache() override { return coverCache; }

private:
    void BecomeFile(const QString& path);
    void SetName(const QString& path);
    void ClearContent();
    void ReadDocument(CXmlDocument& document);
    void ReadFolders(CXmlDocument& document);
    void ReadGalleries(CXmlDocument& document);
    void FindFilesAgain(const QString& folder);
    bool LookForWatermarks();
    void WriteDocument(CXmlDocument& document) const;
    CGallery& CreateGallery(int32_t index);
    std::vector<CGallery*> ChildrenBeforeParents();
    std::optional<int32_t> FindParentIndex(int32_t index) const;
    void MoveChildrenUp(CGallery& gallery);
    void EraseGallery(int32_t index);

    const CProjectEnvironment environment;
    const CRegistrySettingsBase settings;
    CRecentFolders recentFolders;
    CGalleryCatalogue catalogue;
    CCoverCache coverCache;
    bool loaded = false;
    bool previewMode = true;
    ProjectIdentity identity;
    ProjectRests rests;
    std::set<QString> absentWatermarks; // as they were last looked for
    QString name;
    CDeploySettings deploySettings;
    std::map<int32_t, std::unique_ptr<CGallery>> galleries;
    int32_t currentGalleryIndex = 0;
    int32_t rootGalleryIndex = 0;
};
