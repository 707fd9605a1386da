#pragma once

#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

// Which files of a folder count as pictures: those whose name ends in .gif, .png, .bmp, .jpg or .pcx, without
// regard to case. Nothing else counts; a ".jpeg" file is left to be added by hand.
bool IsPictureFile(const QString& name);

// A folder is no picture, and a pipe or a device would keep whoever opens it waiting.
bool IsFile(const QString& path);

// Full paths of the pictures of a folder, in name order, hidden ones left out.
std::vector<QString> ListPictureFiles(const QString& folder);

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
    const QStringList& ListSubfolders();

    const QString projectFolder;
    std::optional<QStringList> subfolders;
};
