#pragma once

#include <cstdint>

#include <QString>

class CImageEffect;

// The images that the views show, pictures of pages and cards of folders, kept from run to run in the user's
// cache. A file's name tells the path, size and time of its source and everything that was done to it: a
// picture that has changed or was turned gets a new file, and no two pictures ever share one. What is in
// there may be lost at any time. Made where it is needed, keeps no state of its own; any thread may use it,
// and several programs at once.
class CImageCache {
public:
    struct Options {
        QString folder;
        int64_t limit = int64_t{1024} * 1024 * 1024; // bytes; beyond it the longest unused files go
    };

    // The user's own.
    CImageCache();
    explicit CImageCache(const Options& options) : options(options) {}

    // The file for what the effect makes of a picture, there or not; one that is there counts as used now.
    // Makes the folder. Throws CWin32Exception.
    QString PathFor(const QString& sourcePath, const CImageEffect& effect) const;

    // A file has been written; from time to time that is the occasion to keep the limit.
    void NoteMade(const QString& path) const;
    void RemoveLongestUnused() const;

    // Bytes of all files.
    int64_t GetSize() const;
    // Removes all files, but for what another program is just writing.
    void Clear() const;

private:
    const Options options;
};

// Of all that the views keep on the disk, the covers of galleries included: bytes, and to remove it. Throws
// nothing: a file that can't be removed stays.
int64_t GetSizeOfCaches();
void ClearCaches();

// Removes the folders "NAME_imgs" below the user's temporary folder, in which earlier versions have kept the
// images of the views.
void RemoveFormerImageFolders(const QString& temporaryFolder);
