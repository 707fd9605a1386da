#pragma once

#include <optional>

#include <QString>
#include <QStringList>

// Finds pictures that have moved since a project was saved, by their file names. Made for the reading of one
// project; lists the project's folder once, however many pictures are missing.
class CPictureFinder {
public:
    // projectFolder: with a trailing separator.
    explicit CPictureFinder(const QString& projectFolder) : projectFolder(projectFolder) {}

    // The path itself if it names a file; else a file of the same name in the project's folder, else in one
    // of the folders there, in name order. Null if there is none.
    QString Find(const QString& path);

private:
    QString FindPictureInFolders(const QString& path);
    const QStringList& GetSubfolders();

    const QString projectFolder;
    std::optional<QStringList> subfolders;
};
