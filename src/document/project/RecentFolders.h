#pragma once

#include <cstdint>
#include <vector>

#include <QString>

// The picture folders that were used last, oldest first, and the one of them that is selected. Letter
// case counts.
class CRecentFolders {
public:
    // False, and nothing changed, for a folder that is here already. A list of maxCount folders or more loses
    // its oldest one; a selected folder that is not here any more gives way to the oldest.
    bool Add(const QString& path, uint32_t maxCount);
    bool Remove(const QString& path);
    // A folder that is not here selects none.
    void Select(const QString& path);
    void Clear();

    const std::vector<QString>& GetFolders() const { return folders; }
    const QString& GetSelected() const { return selected; }

private:
    std::vector<QString>::const_iterator Find(const QString& path) const;

    std::vector<QString> folders;
    QString selected;
};
