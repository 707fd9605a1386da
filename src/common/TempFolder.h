#pragma once

#include <QString>

#include "common/Descriptor.h"

// The temporary folder of a run: made in the user's own temporary folder at construction, removed with all
// that it holds at destruction. One per run, owned by the program's start-up code. Locked (flock) as long as
// its run lives, so that a later run knows those that were left behind by one that ended without notice, and
// removes them.
class CTempFolder {
public:
    // parent: with a trailing separator. Throws CWin32Exception if the folder can't be made.
    explicit CTempFolder(const QString& parent);
    ~CTempFolder();
    CTempFolder(const CTempFolder&) = delete;
    CTempFolder& operator=(const CTempFolder&) = delete;

    // With a trailing separator.
    const QString& GetPath() const { return path; }

    // Writes a built-in resource to fileName in this folder and returns the full path. Without overwrite an
    // existing file is left as it is. A resource that doesn't exist gives an empty file.
    QString ExtractResource(const QString& name, const QString& type, const QString& fileName,
                            bool overwrite);

private:
    QString path;
    CDescriptor lock;
};
