#pragma once

#include <QString>

#include "common/FileSystem.h"

// Visitor of a directory tree, see ProcessDirectory. Paths are full paths.
class CDirectoryProcessor {
public:
    enum class Answer : int { Stop = 0, Continue = 1, Skip = 2 };

    virtual ~CDirectoryProcessor() = default;

    // Stop ends the walk of this level, Continue goes down into the directory, Skip passes it over.
    virtual Answer OnEnterDirectory(const QString& path, const DirectoryEntry& entry);
    // Stop ends the walk of this level.
    virtual Answer OnFile(const QString& path, const DirectoryEntry& entry) = 0;
    virtual void OnLeaveDirectory(const QString& path, const DirectoryEntry& entry);
};

// Walks a tree in name order. A stop ends only the level at which it is given: the levels above go on with
// their next entry, so a visitor that wants to end the whole walk has to keep answering Stop. A directory
// that can't be listed is a directory with no entries; nothing is reported.
void ProcessDirectory(const QString& root, CDirectoryProcessor& processor);

// Deletes what it meets; failures are ignored. A link to a folder is removed as a link, never followed.
class CDirectoryRemover final : public CDirectoryProcessor {
public:
    Answer OnEnterDirectory(const QString& path, const DirectoryEntry& entry) override;
    Answer OnFile(const QString& path, const DirectoryEntry& entry) override;
    void OnLeaveDirectory(const QString& path, const DirectoryEntry& entry) override;
};

// Removes a directory with all that it holds. True if the directory itself could be removed at the end.
bool RemoveDirectoryTree(const QString& path);
