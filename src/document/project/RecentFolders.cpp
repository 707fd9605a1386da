#include "document/project/RecentFolders.h"

#include <algorithm>

bool CRecentFolders::Add(const QString& path, uint32_t maxCount)
{
    if (Find(path) != folders.end()) {
        return false;
    }
    // One only, also where the limit has been lowered since.
    if (!folders.empty() && folders.size() >= maxCount) {
        folders.erase(folders.begin());
    }
    folders.push_back(path);
    if (Find(selected) == folders.end()) {
        selected = folders.front();
    }
    return true;
}

bool CRecentFolders::Remove(const QString& path)
{
    const auto found = Find(path);
    if (found == folders.end()) {
        return false;
    }
    folders.erase(found);
    return true;
}

void CRecentFolders::Select(const QString& path)
{
    const auto found = Find(path);
    selected = found != folders.end() ? *found : QString();
}

void CRecentFolders::Clear()
{
    folders.clear();
    selected.clear();
}

std::vector<QString>::const_iterator CRecentFolders::Find(const QString& path) const
{
    return std::find(folders.begin(), folders.end(), path);
}
