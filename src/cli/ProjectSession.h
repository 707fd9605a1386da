#pragma once

#include <memory>

#include "common/Settings.h"
#include "common/TempFolder.h"
#include "document/project/GalleryProject.h"

// A project in memory together with what it needs of the machine: settings, and a temporary folder that is
// gone when the session ends.
class CProjectSession {
public:
    CProjectSession();

    CGalleryProject& GetProject() { return project; }
    // With a trailing separator.
    const QString& GetTemporaryFolder() const { return tempFolder.GetPath(); }

    // Unlike the desktop program's opening, a project that doesn't exist is an error: CFileException. The
    // ending of the path may be missing. Throws CGenericException for what is no file.
    void OpenExisting(const QString& path);

private:
    const std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;
    CGalleryProject project;
};
