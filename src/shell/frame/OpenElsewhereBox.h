#pragma once

#include <optional>

#include <QString>

#include "shell/frame/ProjectLock.h"

class QWidget;

// The lock with which a project is to be opened. If another program has the project open, the person is asked
// whether to open it as read-only; nothing if they would rather not. A lock of another computer, which may
// have ended without notice, can be seized.
std::optional<CProjectLock> AcquireProjectLock(const QString& projectPath, QWidget* parent);
