#include "shell/folder/FolderWatcher.h"

#include <sys/stat.h>

#include <QFile>

namespace {

using namespace std::chrono_literals;

constexpr auto pauseLength = 250ms;
constexpr auto searchInterval = 2s;
constexpr int maximumFiles = 64;

// Device and file number of what stands under the path; zeros for nothing.
std::pair<uint64_t, uint64_t> IdentityOf(const QString& folder)
{
    struct stat status {};
    const bool isThere = ::stat(QFile::encodeName(folder).constData(), &status) == 0;
    return isThere ? std::pair<uint64_t, uint64_t>(status.st_dev, status.st_ino)
                   : std::pair<uint64_t, uint64_t>();
}

} // namespace

CFolderWatcher::CFolderWatcher(std::function<void()> changed) : changed(std::move(changed))
{
    pause.setSingleShot(true);
    pause.setInterval(pauseLength);
    search.setInterval(searchInterval);
    const auto note = [this] {
        // Not started anew by each change: a long copy shows its files as they come.
        if (!pause.isActive()) {
            pause.start();
        }
    };
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, note);
    connect(&watcher, &QFileSystemWatcher::fileChanged, this, note);
    connect(&pause, &QTimer::timeout, this, [this] { this->changed(); });
    connect(&search, &QTimer::timeout, this, &CFolderWatcher::LookForFolder);
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
    search.stop();
    if (!folder.isEmpty()) {
        watched = IdentityOf(folder);
        watcher.addPath(folder);
        search.start();
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

void CFolderWatcher::LookForFolder()
{
    if (IdentityOf(folder) != watched) {
        search.stop();
        changed();
    }
}
