#include "shell/frame/WindowPlace.h"

#include <QMainWindow>
#include <QScreen>

#include "shell/frame/FramePanes.h"
#include "shell/frame/MainFrameSettings.h"

void RestoreWindowPlace(QMainWindow& window, CFramePanes& panes, CSettingsStore& settings)
{
    const CMainFrameSettings values(settings);
    const QByteArray geometry =
        QByteArray::fromBase64(values.GetString(QStringLiteral("WindowGeometry")).toLatin1());
    panes.RestoreBars(values.GetString(QStringLiteral("WindowBars")));
    if (window.restoreGeometry(geometry)) {
        window.show();
    } else {
        // The size that the window gets when a person makes it smaller again.
        window.resize(window.screen()->availableSize() * 4 / 5);
        window.showMaximized();
    }
}

void StoreWindowPlace(const QMainWindow& window, const CFramePanes& panes, CSettingsStore& settings)
{
    settings.WriteAll(
        CSettingsStore::Scope::User, CMainFrameSettings::GetKeyName(),
        {{QStringLiteral("WindowGeometry"), QString::fromLatin1(window.saveGeometry().toBase64())},
         {QStringLiteral("WindowBars"), panes.SaveBars()}});
}
