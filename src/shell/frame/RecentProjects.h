#pragma once

#include <cstdint>
#include <vector>

#include <QString>

class CSettingsStore;

// The projects that were opened last, most recent first; the front one is the project that is open. Owned by
// the frame. Screen's thread.
class CRecentProjects {
public:
    // As many have a command number in the menu.
    static constexpr uint32_t MaxCount = 21;

    // settings: borrowed. The length of the list and the path that it begins with in a first run come from
    // there, see CMainFrameSettings.
    explicit CRecentProjects(CSettingsStore& settings);

    // Empty entries are left out.
    void Load();
    // False if the settings can't be written.
    bool Store() const;

    // To the front. What is beyond the length of the list is dropped.
    void Add(const QString& path);

    const std::vector<QString>& GetPaths() const { return paths; }
    // Empty if the list is.
    QString GetFront() const { return paths.empty() ? QString() : paths.front(); }
    bool IsCurrent(const QString& path) const;

    // Positions in GetPaths, in the order of the projects' names.
    std::vector<int> GetOrderByName() const;

private:
    uint32_t GetLength() const;

    CSettingsStore& settings;
    std::vector<QString> paths;
};
