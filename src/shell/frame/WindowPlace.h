#pragma once

class CFramePanes;
class CSettingsStore;
class QMainWindow;

// Shows the window where it was when it was closed last, with its bars where they were; in a first run
// maximised.
void RestoreWindowPlace(QMainWindow& window, CFramePanes& panes, CSettingsStore& settings);
void StoreWindowPlace(const QMainWindow& window, const CFramePanes& panes, CSettingsStore& settings);
