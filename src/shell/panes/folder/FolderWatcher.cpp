#include "shell/panes/folder/FolderWatcher.h"

#include "common/FileSystem.h"

namespace {

using namespace std::chrono_literals;

constexpr auto pauseLength = 250ms;
constexpr auto lookOutInterval = 2s;
constexpr int maximumFiles = 64;

} // namespace

CFolderWatcher::CFolderWatcher(std::function<void()> changed) : changed(std::move(changed))
{
    pause.setSingleShot(true);
    pause.setInterval(pauseLength);
    lookOut.setInterval(lookOutInterval);
    const auto note = [this] {
        // Not started anew by each change: a long copy shows its files as they come.
        if (!pause.isActive()) {
            pause.start();
        }
    };
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, note);
    connect(&watcher, &QFileSystemWatcher::fileChanged, this, note);
    connect(&pause, &QTimer::timeout, this, [this] { this->changed(); });
    connect(&lookOut, &QTimer::timeout, this, &CFolderWatcher::LookForFolder);
}

// Always anew: what stood under the path may have been moved away, and something else be there.
void CFolderWatcher::Watch(const QString& newFolder)
{
    if (!watcher.directories().isEmpty()) {
        watcher.removePaths(watcher.directories());
    }
    WatchFiles({});
    folder = newFolder;
    pause.stop();
    lookOut.stop();
    if (!folder.isEmpty()) {
        watcher.addPath(folder);
        isThere = FolderExists(folder);
        lookOut.start();
    }
}

void CFolderWatcher::WatchFiles(const QStringList& paths)
{
    if (!watcher.files().isEmpty()) {
        watcher.removePaths(watcher.files());
    }
    if (!paths.isEmpty()) {
        watcher.addPaths(paths.mid(0, maximumFiles));
    }
}

// The system tells of a folder's content, not of the folder itself being moved or of a disk that
// is taken out.
void CFolderWatcher::LookForFolder()
{
    if (FolderExists(folder) != isThere) {
        lookOut.stop();
        changed();
    }
}
