#include "shell/frame/ProjectDesk.h"

#include <QStatusBar>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Platform.h"
#include "common/Trace.h"
#include "document/project/GalleryProject.h"
#include "document/project/ProjectFilePath.h"
#include "shell/dialogs/DlgEarlierVersions.h"
#include "shell/dialogs/DlgNewGallery.h"
#include "shell/dialogs/FailureBox.h"
#include "shell/dialogs/FileDialogs.h"
#include "shell/frame/MainFrameSettings.h"
#include "shell/frame/OpenElsewhereBox.h"
#include "shell/frame/ProjectPath.h"

namespace {

constexpr int SavedAgainShown = 5000; // milliseconds

// The path of the state that the person has chosen; empty if none.
QString AskForEarlierVersion(const QString& projectPath, const std::vector<CProjectBackups::State>& states,
                             QWidget* parent)
{
    std::vector<CDlgEarlierVersions::Version> versions;
    for (const CProjectBackups::State& state : states) {
        versions.push_back({state.changed, state.galleries, state.pictures});
    }
    CDlgEarlierVersions dialog(ProjectNameOf(projectPath), versions, parent);
    return dialog.exec() == QDialog::Accepted ? states[dialog.GetChosen()].path : QString();
}

// reason: null for a project that is open elsewhere.
CGenericException ReadOnlyFailure(const QString& path, const QString& reason)
{
    return CGenericException(Text(StringId::ProjectNotSaved, path),
                             reason.isNull() ? Text(StringId::ProjectIsReadOnly) : reason,
                             Text(StringId::SaveUnderOtherName));
}

} // namespace

CProjectDesk::CProjectDesk(CGalleryProject& project, CSettingsStore& settings, Window window)
    : project(project),
      window(std::move(window)),
      keeper(project,
             {.failed =
                  [this](const CExceptionBase& failure) {
                      this->window.statusBar->showMessage(failure.GetCaption());
                      ShowFailure(failure, this->window.widget);
                  },
              .succeededAgain =
                  [this] {
                      this->window.statusBar->showMessage(Text(StringId::ProjectSavedAgain), SavedAgainShown);
                  }},
             {.backupsFolder = FindBackupsFolder()}),
      recentProjects(settings)
{}

void CProjectDesk::Start(const QString& wanted)
{
    recentProjects.Load();
    const QString path = wanted.isEmpty() ? recentProjects.GetFront() : WithProjectEnding(wanted);
    try {
        if (!Open(path)) {
            OpenSubstitute();
            return;
        }
    } catch (const CExceptionBase& failure) {
        ShowFailure(failure, window.widget);
        if (!project.IsLoaded()) {
            if (OfferEarlierVersion(NormalisedProjectPath(path))) {
                Start(path);
            } else {
                OpenSubstitute();
            }
            return;
        }
        // A new project that could not be written yet: it can be saved elsewhere.
        ShowWithoutFile(NormalisedProjectPath(path));
    }
    AddRecent(path);
}

// At a path where nothing is, so that no file is put at risk; the project that can't be read least of all.
void CProjectDesk::OpenSubstitute()
{
    GalleryPath path = SplitSuggestion(GetDefaultProjectPath());
    path.name = FindFreeName(path);
    try {
        Open(path.Join());
    } catch (const CExceptionBase& failure) {
        if (!project.IsLoaded()) {
            throw;
        }
        ShowFailure(failure, window.widget);
        ShowWithoutFile(path.Join());
    }
    AddRecent(path.Join());
}

void CProjectDesk::ShowWithoutFile(const QString& path)
{
    keeper.Adopt(path, CProjectLock(path));
    window.projectReplaced();
}

bool CProjectDesk::Open(const QString& path)
{
    Trace(QStringLiteral("Opening a gallery"));
    const QString normalised = NormalisedProjectPath(path);
    RequireProjectFile(normalised);
    std::optional<CProjectLock> lock = AcquireProjectLock(normalised, window.widget);
    if (!lock.has_value()) {
        return false;
    }
    keeper.Open(normalised, std::move(*lock));
    window.projectReplaced();
    if (!keeper.GetReadOnlyReason().isNull()) {
        ShowFailure(CGenericException(Text(StringId::ProjectOpenedReadOnly, ProjectNameOf(normalised)),
                                      keeper.GetReadOnlyReason(), Text(StringId::SaveUnderOtherName)),
                    window.widget);
    }
    return true;
}

void CProjectDesk::Save()
{
    if (keeper.IsReadOnly()) {
        throw ReadOnlyFailure(keeper.GetPath(), keeper.GetReadOnlyReason());
    }
    keeper.Save();
}

void CProjectDesk::SaveAs()
{
    CGallerySaveDialog dialog(CGallerySaveDialog::Purpose::Save, recentProjects.GetFront(), window.widget);
    if (dialog.exec() != QDialog::Accepted || recentProjects.IsCurrent(dialog.GetPath())) {
        return;
    }
    const QString path = NormalisedProjectPath(dialog.GetPath());
    CProjectLock lock(path);
    if (lock.GetState() == CProjectLock::State::OpenElsewhere) {
        throw ReadOnlyFailure(path, QString());
    }
    keeper.SaveAs(path, std::move(lock));
    AddRecent(path);
    window.projectRenamed();
}

void CProjectDesk::OpenByDialog()
{
    CGallerySaveDialog dialog(CGallerySaveDialog::Purpose::Open, recentProjects.GetFront(), window.widget);
    if (dialog.exec() == QDialog::Accepted && !recentProjects.IsCurrent(dialog.GetPath())) {
        Switch(dialog.GetPath());
    }
}

void CProjectDesk::OpenEarlierVersion()
{
    const QString path = keeper.GetPath();
    if (keeper.IsReadOnly()) {
        throw ReadOnlyFailure(path, keeper.GetReadOnlyReason());
    }
    const QString state = AskForEarlierVersion(path, keeper.GetBackups().List(path), window.widget);
    if (state.isEmpty()) {
        return;
    }
    const CProjectKeeper::CPause pause(keeper);
    try {
        keeper.ReturnTo(state);
        window.projectReplaced();
    } catch (const CExceptionBase& failure) {
        if (!project.IsLoaded()) {
            Reopen(path);
        }
        ShowFailure(failure, window.widget);
    }
}

// For a project that can't be read: true if the person has put an earlier state into its place. The damaged
// file is kept among the states.
bool CProjectDesk::OfferEarlierVersion(const QString& path)
{
    const auto states = keeper.GetBackups().List(path);
    if (states.empty() || CProjectLock(path).GetState() != CProjectLock::State::Held) {
        return false;
    }
    const QString state = AskForEarlierVersion(path, states, window.widget);
    if (state.isEmpty()) {
        return false;
    }
    try {
        keeper.GetBackups().Keep(path, ReadWholeFile(path), QDateTime::currentDateTime());
        WriteFileAtomically(path, ReadWholeFile(state));
        return true;
    } catch (const CExceptionBase& failure) {
        ShowFailure(failure, window.widget);
        return false;
    }
}

void CProjectDesk::OpenRecent(int index)
{
    if (index == -1) {
        CDlgNewGallery dialog(GetDefaultProjectPath(), window.widget);
        if (dialog.exec() == QDialog::Accepted) {
            Switch(dialog.GetProjectPath());
        }
        return;
    }
    const std::vector<QString>& paths = recentProjects.GetPaths();
    if (index >= 0 && index < static_cast<int>(paths.size())) {
        // A copy: the list changes meanwhile.
        Switch(QString(paths[index]));
    }
}

void CProjectDesk::Switch(const QString& path)
{
    if (keeper.IsReadOnly()) {
        if (!SaveAtEnd()) {
            return;
        }
    } else {
        keeper.Save();
    }
    if (keeper.GetPath() == NormalisedProjectPath(path)) {
        return;
    }
    // Until one or the other project is whole again nothing may be saved.
    const CProjectKeeper::CPause pause(keeper);
    try {
        if (Open(path)) {
            AddRecent(path);
        }
    } catch (const CExceptionBase& failure) {
        Reopen(keeper.GetPath());
        ShowFailure(failure, window.widget);
        if (OfferEarlierVersion(NormalisedProjectPath(path))) {
            Switch(path);
        }
    }
}

// The former project's lock is still held.
void CProjectDesk::Reopen(const QString& path)
{
    try {
        project.Open(path);
        window.projectReplaced();
    } catch (const CExceptionBase& failure) {
        ShowFailure(failure, window.widget);
        OpenSubstitute();
    }
}

void CProjectDesk::AddRecent(const QString& path)
{
    recentProjects.Add(path);
    window.recentListChanged();
}

QString CProjectDesk::GetTitle() const
{
    // Cut at the first dot, as the project's own name is that its pages show.
    const QString name = CutAtFirstDot(ExtractLastName(keeper.GetPath())).stem;
    return keeper.IsReadOnly() ? Text(StringId::ReadOnlyProject, name) : name;
}

bool CProjectDesk::SaveAtEnd()
{
    try {
        // What was changed in a project that is read-only is lost unless it is saved elsewhere.
        if (keeper.IsReadOnly() && keeper.HasUnsavedChanges()) {
            throw ReadOnlyFailure(keeper.GetPath(), keeper.GetReadOnlyReason());
        }
        keeper.Save();
        return true;
    } catch (const CExceptionBase& failure) {
        switch (AskAboutUnsaved(failure, window.widget)) {
        case UnsavedChoice::SaveElsewhere:
            try {
                SaveAs();
            } catch (const CExceptionBase& secondFailure) {
                ShowFailure(secondFailure, window.widget);
            }
            return false;
        case UnsavedChoice::CloseAnyway:
            return true;
        case UnsavedChoice::Stay:
            break;
        }
        return false;
    }
}
