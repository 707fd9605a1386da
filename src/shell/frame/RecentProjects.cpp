#include "shell/frame/RecentProjects.h"

#include <algorithm>
#include <numeric>

#include "common/Settings.h"
#include "shell/frame/MainFrameSettings.h"
#include "shell/frame/ProjectPath.h"

namespace {

// "ProjectFileName", "ProjectFileName1", ...
QString ValueName(uint32_t place)
{
    const QString name = QStringLiteral("ProjectFileName");
    return place == 0 ? name : name + QString::number(place);
}

} // namespace

CRecentProjects::CRecentProjects(CSettingsStore& settings) : settings(settings) {}

// At least one: the front of the list is where the project is saved.
uint32_t CRecentProjects::GetLength() const
{
    const uint32_t wanted = CMainFrameSettings(settings).GetDWord(QStringLiteral("RecentProjectsCount"));
    return std::clamp<uint32_t>(wanted, 1, MaxCount);
}

void CRecentProjects::Load()
{
    const CMainFrameSettings values(settings);
    paths.clear();
    for (uint32_t place = 0; place < GetLength(); ++place) {
        const QString path = values.GetString(ValueName(place));
        if (!path.isEmpty()) {
            paths.push_back(NormalisedProjectPath(path));
        }
    }
}

bool CRecentProjects::Store() const
{
    const auto scope = CSettingsStore::Scope::User;
    const QString key = CMainFrameSettings::GetKeyName();
    CSettingsStore::Values values;
    for (uint32_t place = 0; place < paths.size(); ++place) {
        values[ValueName(place)] = paths[place];
    }
    bool stored = settings.WriteAll(scope, key, values);
    for (uint32_t place = static_cast<uint32_t>(paths.size()); place < MaxCount; ++place) {
        stored = settings.RemoveValue(scope, key, ValueName(place)) && stored;
    }
    return stored;
}

void CRecentProjects::Add(const QString& path)
{
    const QString added = NormalisedProjectPath(path);
    paths.erase(std::remove(paths.begin(), paths.end(), added), paths.end());
    paths.insert(paths.begin(), added);
    if (paths.size() > GetLength()) {
        paths.resize(GetLength());
    }
}

bool CRecentProjects::IsCurrent(const QString& path) const
{
    return !paths.empty() && paths.front() == NormalisedProjectPath(path);
}

std::vector<int> CRecentProjects::GetOrderByName() const
{
    std::vector<int> order(paths.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [this](int a, int b) {
        return ProjectNameOf(paths[a]).compare(ProjectNameOf(paths[b]), Qt::CaseInsensitive) < 0;
    });
    return order;
}
