#include "deploy/PublishedProject.h"

#include "common/Exceptions.h"
#include "common/Trace.h"

namespace {

// The site is whole without it; the next run takes longer, and asks about its files.
template <class Write>
void Try(const Write& write)
{
    try {
        write();
    } catch (const CExceptionBase& failure) {
        Trace(QStringLiteral("CDeploymentRecord::Save failed: ") + failure.GetDescription());
    }
}

} // namespace

CRecordSaver::CRecordSaver(const CDeploymentRecord& record) : record(record)
{
    Try([&] { record.Begin(); });
}

CRecordSaver::~CRecordSaver()
{
    Try([this] { record.Save(); });
}

CPublishedProject::CPublishedProject(CGalleryProject& whole, const DeployDoubts& missing) : whole(whole)
{
    if (missing.IsAnyMissing()) {
        folder = std::make_unique<CTempFolder>(whole.GetTempFolder().GetPath());
        copy = whole.MakeCopy(*folder);
        copy->SetPreviewMode(false);
        LeaveOut(missing, *copy);
    }
}

QString ProjectKeyOf(const CGalleryProject& project)
{
    return project.GetId().isEmpty() ? project.GetPath() : project.GetId();
}

CDeploymentRecord OpenRecordFor(const CGalleryProject& project, const QString& recordsFolder,
                                const QString& targetFolder)
{
    const auto pathFor = [&](const QString& key) {
        return CDeploymentRecord::PathFor(recordsFolder, targetFolder, key);
    };
    const QString path = pathFor(ProjectKeyOf(project));
    CDeploymentRecord::TakeOver(path, pathFor(project.GetPath()));
    CDeploymentRecord::TakeOver(path, pathFor(project.GetName()));
    return CDeploymentRecord(path, targetFolder);
}
