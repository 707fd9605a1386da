#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QStringList>

#include "deploy/DeployFailure.h"

class CGalleryProject;

// A file of a gallery that a deployment can't use.
struct UnusableFile {
    int32_t gallery = 0; // index
    QString path;

    bool operator==(const UnusableFile&) const = default;
};

// What a person should decide before a deployment writes anything. A plain value.
struct DeployDoubts {
    std::vector<UnusableFile> absentPictures;       // not there now, in the order of the galleries
    std::vector<UnusableFile> unreadableWatermarks; // missing, or no pictures
    QStringList strangeFiles;                       // of the target: somebody else's, to be overwritten

    bool IsAnyMissing() const { return !absentPictures.empty() || !unreadableWatermarks.empty(); }
};

// Looks at the files of all galleries that a site shows. The strangers' files are left out.
DeployDoubts FindMissingFiles(const CGalleryProject& project);

// Takes the entries of absent pictures and the names of unreadable watermarks out of a project: a copy of the
// one that is meant, since nothing of it may be lost.
void LeaveOut(const DeployDoubts& doubts, CGalleryProject& project);

// One text for each thing that is left out.
QStringList WarningsOf(const DeployDoubts& doubts);

// The failures that end a deployment; the first ten files are named.
DeployFailure MissingFilesError(const DeployDoubts& doubts);
DeployFailure StrangeFilesError(const QString& targetFolder, const QStringList& files);
// files: paths of the site.
DeployFailure StrangeFilesOnServerError(const QStringList& files);
