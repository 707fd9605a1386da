#include "shell/frame/MainFrameSettings.h"

#include <QDir>
#include <QStandardPaths>

#include "common/FileSystem.h"
#include "resources/StringTable.h"

CMainFrameSettings::CMainFrameSettings(CSettingsStore& store)
    : CRegistrySettingsBase(store, CSettingsStore::Scope::User, GetKeyName(),
                            {{QStringLiteral("RecentProjectsCount"), QStringLiteral("10")},
                             {QStringLiteral("EnableExplorerPopupMenu"), QStringLiteral("0")},
                             {QStringLiteral("ProjectFileName"), GetDefaultProjectPath()},
                             {QStringLiteral("ColourScheme"), QStringLiteral("desktop")},
                             {QStringLiteral("WindowGeometry"), QString()},
                             {QStringLiteral("WindowBars"), QString()}})
{}

QString CMainFrameSettings::GetKeyName()
{
    return QStringLiteral("Corvane/Vistorama");
}

QString GetDefaultProjectPath()
{
    static const QString path = [] {
        const QString documents =
            QDir::toNativeSeparators(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
        const QString folder = JoinPath(documents, QStringLiteral("Vistorama"));
        return JoinPath(folder, Text(StringId::DefaultProjectName) + QStringLiteral(".gallery"));
    }();
    return path;
}

HTMLViewOptions ReadBrowserOptions(CSettingsStore& store)
{
    const CMainFrameSettings settings(store);
    return {.settings = &store,
            .optionKeyPath = CMainFrameSettings::GetKeyName() + QStringLiteral("/InternetExplorer"),
            .allowContextMenu = settings.GetDWord(QStringLiteral("EnableExplorerPopupMenu")) != 0};
}
