#include "shell/frame/MissingPictures.h"

#include <algorithm>

#include <QMessageBox>

#include "common/FileSystem.h"
#include "document/project/GalleryProject.h"
#include "resources/StringTable.h"
#include "shell/dialogs/DlgFoundPictures.h"
#include "shell/dialogs/FileDialogs.h"
#include "shell/look/Waiting.h"

namespace {

// What is found below the folder of all that is missing, until the search is through or stopped.
std::vector<FileMove> Search(const CGalleryProject& project, const QString& folder, QWidget* parent)
{
    const std::vector<AbsentFile> absent = project.GetAbsentFiles();
    if (absent.empty()) {
        return {};
    }
    const CAbsentFileSearch search(absent, project.GetPresentFiles());
    std::vector<FileMove> moves;
    WorkWhileWaiting(
        Text(StringId::SearchingFolder, folder),
        [&](const CStopSignal& stop) { moves = search.Find(folder, stop); }, parent);
    return moves;
}

void Tell(const QString& text, QWidget* parent)
{
    QMessageBox(QMessageBox::Information, Text(StringId::FindMissingTitle), text, QMessageBox::Ok, parent)
        .exec();
}

// The same file may be lost to several galleries.
std::vector<FileMove> MovesTo(const QString& found, const QString& path,
                              const std::vector<AbsentFile>& absent)
{
    std::vector<FileMove> moves;
    for (const AbsentFile& file : absent) {
        if (file.path == path && !file.isWatermark) {
            moves.push_back({.gallery = file.gallery, .oldPath = path, .newPath = found});
        }
    }
    return moves;
}

// Those of the matches that the person agrees to.
std::vector<FileMove> AskWhichToMove(const CGalleryProject& project, const std::vector<FileMove>& moves,
                                     const QString& folder, QWidget* parent)
{
    std::vector<CDlgFoundPictures::Match> matches;
    for (const FileMove& move : moves) {
        matches.push_back({move.oldPath, move.newPath, move.hasExactSize});
    }
    CDlgFoundPictures dialog(matches, static_cast<int>(project.GetAbsentFiles().size()), folder, parent);
    if (dialog.exec() != QDialog::Accepted) {
        return {};
    }
    std::vector<FileMove> agreed;
    for (const size_t place : dialog.GetChosen()) {
        agreed.push_back(moves[place]);
    }
    return agreed;
}

} // namespace

void FindMissingPictures(const CGalleryProject& project, const MoveFound& move, QWidget* parent)
{
    if (project.GetAbsentFiles().empty()) {
        return Tell(Text(StringId::NothingIsMissing), parent);
    }
    const QString folder = AskForPictureFolder(project.GetRecentFolder(), parent);
    if (folder.isEmpty()) {
        return;
    }
    const std::vector<FileMove> found = Search(project, folder, parent);
    if (found.empty()) {
        return Tell(Text(StringId::NoneFoundBelow, folder), parent);
    }
    move(AskWhichToMove(project, found, folder, parent));
}

void FindMissingPicture(const CGalleryProject& project, const QString& path, const MoveFound& move,
                        QWidget* parent)
{
    const std::vector<AbsentFile> absent = project.GetAbsentFiles();
    if (std::none_of(absent.begin(), absent.end(),
                     [&](const AbsentFile& file) { return file.path == path; })) {
        return; // it has come back
    }
    const QString chosen = AskForPicture(ExtractLastName(path), project.GetRecentFolder(), parent);
    if (chosen.isEmpty()) {
        return;
    }
    if (!move(MovesTo(chosen, path, absent))) {
        return Tell(Text(StringId::FoundIsHereAlready, chosen), parent);
    }
    const QString folder = ExtractFolder(chosen);
    const std::vector<FileMove> nearby = Search(project, folder, parent);
    if (!nearby.empty()) {
        move(AskWhichToMove(project, nearby, folder, parent));
    }
}
