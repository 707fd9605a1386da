#include "document/files/FileIndex.h"

#include <algorithm>
#include <deque>
#include <filesystem>
#include <set>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "common/FileSystem.h"
#include "common/StopSignal.h"

namespace {

using Clock = std::chrono::steady_clock;

struct OpenFolder {
    QString path;
    QString realPath;
    int level;
};

// What a limit allows of the time from its making on.
class CBudget {
public:
    explicit CBudget(const CFileIndex::Limits& limits) : limits(limits), start(Clock::now()) {}

    bool IsUsedUp(size_t listed) const
    {
        constexpr size_t alwaysListed = 100;
        return listed >= limits.folders || (limits.stop && limits.stop->IsSet()) ||
               (listed >= alwaysListed && Clock::now() - start >= limits.time);
    }

private:
    const CFileIndex::Limits& limits;
    const Clock::time_point start;
};

QString NameOf(const std::filesystem::directory_entry& entry)
{
    return QFile::decodeName(entry.path().filename().c_str());
}

struct Listing {
    std::vector<QString> folders;
    std::vector<QString> files;
};

// By the kinds that the listing itself tells: no file is asked for more.
Listing ListFolder(const QString& folder, const std::map<QString, std::vector<QString>>& sought)
{
    Listing listing;
    std::error_code error;
    std::filesystem::directory_iterator entry(QFile::encodeName(folder).constData(), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        std::error_code unknown;
        const QString name = NameOf(*entry);
        if (name.startsWith(QLatin1Char('.')) || entry->is_symlink(unknown)) {
            continue;
        }
        if (entry->is_directory(unknown)) {
            listing.folders.push_back(name);
        } else if (sought.count(name) != 0 && entry->is_regular_file(unknown)) {
            listing.files.push_back(name);
        }
    }
    std::sort(listing.folders.begin(), listing.folders.end());
    return listing;
}

// Folders as they were asked for; real paths tell whether two ways lead to one of them.
std::deque<OpenFolder> Opened(const QStringList& folders)
{
    std::deque<OpenFolder> open;
    for (const QString& folder : folders) {
        const QString path = QDir::cleanPath(folder);
        const QString realPath = QFileInfo(path).canonicalFilePath();
        if (!realPath.isEmpty()) {
            open.push_back({path, realPath, 0});
        }
    }
    return open;
}

} // namespace

CFileIndex::CFileIndex(const QStringList& folders, const std::vector<QString>& names, const Limits& limits)
{
    for (const QString& name : names) {
        files[name];
    }
    const CBudget budget(limits);
    std::set<QString> listed;
    std::deque<OpenFolder> open = Opened(folders);
    while (!open.empty()) {
        if (budget.IsUsedUp(listed.size())) {
            isCutShort = true;
            return;
        }
        const OpenFolder folder = open.front();
        open.pop_front();
        if (!listed.insert(folder.realPath).second) {
            continue;
        }
        const Listing listing = ListFolder(folder.path, files);
        for (const QString& name : listing.files) {
            files[name].push_back(JoinPath(folder.path, name));
        }
        for (const QString& name : listing.folders) {
            if (folder.level < limits.levels) {
                open.push_back(
                    {JoinPath(folder.path, name), JoinPath(folder.realPath, name), folder.level + 1});
            }
        }
    }
}

const std::vector<QString>& CFileIndex::GetFiles(const QString& name) const
{
    static const std::vector<QString> none;
    const auto found = files.find(name);
    return found != files.end() ? found->second : none;
}
