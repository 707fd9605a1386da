#include "shell/frame/FramePanes.h"

#include <algorithm>

#include <QApplication>
#include <QMainWindow>
#include <QScreen>
#include <QStringList>
#include <QWebEngineView>

#include "shell/frame/MainFrameSettings.h"
#include "shell/frame/PaneSplitter.h"

namespace {

// The page of a pane, or its first control if it has no page.
QWidget* FocusTarget(QWidget* pane)
{
    if (auto* view = pane->findChild<QWebEngineView*>()) {
        return view;
    }
    const auto children = pane->findChildren<QWidget*>();
    const auto found = std::find_if(children.begin(), children.end(), [](const QWidget* child) {
        return child->focusPolicy() != Qt::NoFocus && child->isVisible();
    });
    return found != children.end() ? *found : pane;
}

bool HoldsFocus(QWidget* pane)
{
    QWidget* const focus = QApplication::focusWidget();
    return focus != nullptr && (pane == focus || pane->isAncestorOf(focus));
}

} // namespace

CFramePanes::CFramePanes(QMainWindow& window, const Views& views)
    : mainBar(new CMainSplitter(&window)),
      sideBar(new CSideSplitter(mainBar)),
      panes{views.pages, views.galleries, views.folder}
{
    sideBar->addWidget(views.galleries);
    sideBar->addWidget(views.folder);
    mainBar->addWidget(views.pages);
    mainBar->addWidget(sideBar);
    window.setCentralWidget(mainBar);
}

void CFramePanes::MoveFocus(int direction)
{
    const int count = static_cast<int>(panes.size());
    const auto found = std::find_if(panes.begin(), panes.end(), HoldsFocus);
    int next = 0;
    if (found != panes.end()) {
        next = (static_cast<int>(found - panes.begin()) + direction + count) % count;
    } else if (direction < 0) {
        next = count - 1;
    }
    FocusTarget(panes[next])->setFocus(direction > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

QString CFramePanes::SaveBars() const
{
    const double share = mainBar->WasMovedByHand() ? mainBar->GetShare() : 0;
    const int position = sideBar->WasMovedByHand() ? sideBar->GetPosition() : 0;
    if (share == 0 && position == 0) {
        return QString();
    }
    return QStringLiteral("%1 %2").arg(share, 0, 'f', 4).arg(position);
}

void CFramePanes::RestoreBars(const QString& text)
{
    const QStringList places = text.split(QLatin1Char(' '));
    mainBar->RestoreShare(places.value(0).toDouble());
    sideBar->RestorePosition(places.value(1).toInt());
}

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
