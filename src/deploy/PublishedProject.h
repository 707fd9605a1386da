#pragma once

#include <memory>

#include "common/TempFolder.h"
#include "content/DeploymentRecord.h"
#include "deploy/DeployDoubts.h"
#include "document/project/GalleryProject.h"

// A project on its way to publication. All of these belong to one run, on the thread of the deployment, while
// nobody else changes the project.

// The project shows its pages as deployed ones, not as previews, as long as this lives.
class CDeployModeScope final {
public:
    explicit CDeployModeScope(CGalleryProject& project) : project(project) { project.SetPreviewMode(false); }
    ~CDeployModeScope() { project.SetPreviewMode(true); }
    CDeployModeScope(const CDeployModeScope&) = delete;
    CDeployModeScope& operator=(const CDeployModeScope&) = delete;

private:
    CGalleryProject& project;
};

// Keeps the record when a run ends, however it does.
class CRecordSaver final {
public:
    explicit CRecordSaver(const CDeploymentRecord& record);
    ~CRecordSaver();
    CRecordSaver(const CRecordSaver&) = delete;
    CRecordSaver& operator=(const CRecordSaver&) = delete;

private:
    const CDeploymentRecord& record;
};

// The project as it is published: itself, or, if something is to be left out, a copy without that. The copy
// has its own folder for covers, since its galleries show others.
class CPublishedProject final {
public:
    CPublishedProject(CGalleryProject& whole, const DeployDoubts& missing);
    CGalleryProject& Get() const { return copy ? *copy : whole; }

private:
    CGalleryProject& whole;
    std::unique_ptr<CTempFolder> folder;
    std::unique_ptr<CGalleryProject> copy;
};

// By which the project is known to records: its id, or, as long as it has none, its file.
QString ProjectKeyOf(const CGalleryProject& project);

// The record of what the project has put into a folder, those of earlier versions taken over.
CDeploymentRecord OpenRecordFor(const CGalleryProject& project, const QString& recordsFolder,
                                const QString& targetFolder);
