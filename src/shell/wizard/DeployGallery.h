#pragma once

class CGalleryProject;
class CSettingsStore;
class QWidget;

// Opens the deployment wizard over the running program's stored connections, and returns when it has closed.
// The caller stores the project, whose deploy settings may have changed.
void DeployGallery(CGalleryProject& project, CSettingsStore& settings, QWidget* parent);
