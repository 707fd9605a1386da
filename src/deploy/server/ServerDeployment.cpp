#include "deploy/server/ServerDeployment.h"

#include <QDateTime>

#include "common/StopSignal.h"
#include "deploy/server/LocalSite.h"
#include "deploy/server/ServerLook.h"
#include "deploy/server/SiteSender.h"

CServerDeployment::CServerDeployment(const Setting& setting)
    : setting(setting),
      folder(setting.sites, setting.siteKey),
      crew(setting.crew),
      journal(folder.GetJournalPath())
{}

void CServerDeployment::TryLogin()
{
    crew.Run(CSessionCrew::Job{QString(), [](CRemoteSession&) {
                               }});
    // Servers don't wait while pages are made.
    crew.Quit();
}

SitePlan CServerDeployment::Compare(const QStringList& paths, bool removeLeftovers, const CStopSignal& stop)
{
    const std::vector<LocalFile> local = ReadLocalSite(folder.GetSite(), paths, folder.GetHashesPath(), stop);
    if (stop.IsSet()) {
        throw SendCancelled();
    }
    const RemoteSite remote = LookAtServer(crew, {setting.place, setting.projectKey, local}, journal);
    return MakeSitePlan({.local = local,
                         .remote = remote,
                         .stored = journal.GetStored(),
                         .sender = journal.GetSender(),
                         .now = QDateTime::currentSecsSinceEpoch(),
                         .removeLeftovers = removeLeftovers});
}

QStringList CServerDeployment::Send(const SitePlan& plan,
                                    const std::function<void(const SendProgress&)>& onProgress,
                                    const std::function<void()>& onTidy)
{
    CSiteSender sender({.siteFolder = folder.GetSite(),
                        .place = setting.place,
                        .projectKey = setting.projectKey,
                        .crew = crew,
                        .journal = journal,
                        .onProgress = onProgress,
                        .now = {},
                        .onTidy = onTidy},
                       plan);
    sender.Run();
    return sender.GetWarnings();
}

void CServerDeployment::Finish()
{
    crew.Quit();
    folder.RemoveLongestUnused();
}
