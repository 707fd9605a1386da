#pragma once

#include "common/Settings.h"
#include "shell/web/HTMLViewOptions.h"

// The settings of the program as a whole. The values stand in the user's scope.
class CMainFrameSettings final : public CRegistrySettingsBase {
public:
    // The store is borrowed and must outlive this object.
    explicit CMainFrameSettings(CSettingsStore& store);

    static QString GetKeyName();
};

// Where a project comes into being that nobody has named: in the user's documents folder. The folders need
// not exist.
QString GetDefaultProjectPath();

// For the views of the frame.
HTMLViewOptions ReadBrowserOptions(CSettingsStore& store);
