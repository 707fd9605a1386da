#include "shell/frame/MissingPictures.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>

#include <QMessageBox>
#include <QProgressDialog>
#include <QTimer>

#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "document/project/GalleryProject.h"
#include "resources/StringTable.h"
#include "shell/dialogs/DlgFoundPictures.h"
#include "shell/dialogs/FileDialogs.h"

namespace {

constexpr int lookInterval = 50; // milliseconds

// What is found below the folder of all that is missing, until the search is through or stopped.
std::vector<FileMove> Search(const CGalleryProject& project, const QString& folder, QWidget* parent)
{
    const std::vector<AbsentFile> absent = project.GetAbsentFiles();
    if (absent.empty()) {
        return {};
    }
    const CAbsentFileSearch search(absent, project.GetPresentFiles());
    QProgressDialog waiting(Text(StringId::SearchingFolder, folder), Text(StringId::StopSearch), 0, 0,
                            parent);
    waiting.setObjectName(QStringLiteral("Searching"));
    waiting.setWindowTitle(Text(StringId::ProgramName));
    waiting.setWindowModality(Qt::WindowModal);
    CStopSignal stop;
    std::atomic<bool> isDone = false;
    std::vector<FileMove> moves;
    std::exception_ptr failure;
    std::thread worker([&] {
        try {
            moves = search.Find(folder, stop);
        } catch (...) {
            failure = std::current_exception();
        }
        isDone = true;
    });
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &waiting, [&] {
        if (isDone) {
            waiting.accept();
        }
    });
    look.start(lookInterval);
    waiting.exec();
    stop.Set();
    worker.join();
    if (failure) {
        std::rethrow_exception(failure);
    }
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

// Moves those of the matches that the person agrees to; returns how many.
int32_t MoveAgreed(CGalleryProject& project, const std::vector<FileMove>& moves, const QString& folder,
                   QWidget* parent)
{
    std::vector<CDlgFoundPictures::Match> matches;
    for (const FileMove& move : moves) {
        matches.push_back({move.oldPath, move.newPath, move.hasExactSize});
    }
    CDlgFoundPictures dialog(matches, static_cast<int>(project.GetAbsentFiles().size()), folder, parent);
    if (dialog.exec() != QDialog::Accepted) {
        return 0;
    }
    std::vector<FileMove> agreed;
    for (const size_t place : dialog.GetChosen()) {
        agreed.push_back(moves[place]);
    }
    return project.Relocate(agreed);
}

} // namespace

int32_t FindMissingPictures(CGalleryProject& project, QWidget* parent)
{
    if (project.GetAbsentFiles().empty()) {
        Tell(Text(StringId::NothingIsMissing), parent);
        return 0;
    }
    const QString folder = AskForPictureFolder(project.GetRecentFolder(), parent);
    if (folder.isEmpty()) {
        return 0;
    }
    const std::vector<FileMove> moves = Search(project, folder, parent);
    if (moves.empty()) {
        Tell(Text(StringId::NoneFoundBelow, folder), parent);
        return 0;
    }
    return MoveAgreed(project, moves, folder, parent);
}

int32_t FindMissingPicture(CGalleryProject& project, const QString& path, QWidget* parent)
{
    const std::vector<AbsentFile> absent = project.GetAbsentFiles();
    if (std::none_of(absent.begin(), absent.end(),
                     [&](const AbsentFile& file) { return file.path == path; })) {
        return 0; // it has come back
    }
    const QString found = AskForPicture(ExtractLastName(path), project.GetRecentFolder(), parent);
    if (found.isEmpty()) {
        return 0;
    }
    const int32_t moved = project.Relocate(MovesTo(found, path, absent));
    if (moved == 0) {
        Tell(Text(StringId::FoundIsHereAlready, found), parent);
        return 0;
    }
    const QString folder = ExtractFolder(found);
    const std::vector<FileMove> nearby = Search(project, folder, parent);
    return nearby.empty() ? moved : moved + MoveAgreed(project, nearby, folder, parent);
}
