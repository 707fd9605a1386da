#pragma once

#include <memory>
#include <string_view>

#include <QTemporaryDir>

#include "common/Exceptions.h"
#include "common/Settings.h"
#include "common/TempFolder.h"
#include "document/project/GalleryProject.h"

// A program folder with one layout and one style, pictures, and room for projects. One for all inputs of a
// run, removed at its end.
class CWorkshop {
public:
    CWorkshop();

    // The full path of a name in the workshop's folder; name may hold "/".
    QString Path(const QString& name) const { return directory.filePath(name); }
    // Writes a file, its folders included, and returns its full path.
    QString Write(const QString& name, std::string_view bytes) const;
    QByteArray Read(const QString& name) const;

    CProjectEnvironment GetEnvironment();

private:
    void WriteProgram() const;

    const QTemporaryDir directory;
    const std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;
};

// A failure that a person is told of says what happened and why.
void CheckTexts(const CExceptionBase& failure);
