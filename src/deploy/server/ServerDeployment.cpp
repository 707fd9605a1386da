#include "deploy/server/ServerDeployment.h"

#include <QDateTime>

#include "common/StopSignal.h"
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
    rest.emplace(crew);
}

SitePlan CServerDeployment::Compare(const SiteSources& sources, bool removeLeftovers, const CStopSignal& stop)
{
    rest.reset();
    local.emplace(sources, folder.GetHashesPath());
    const RemoteSite remote =
        LookAtServer(crew, {setting.place, setting.projectKey, local->GetFiles()}, journal);
    local->ReadHashes([&](const LocalFile& file) { return NeedsHash(file, remote, journal.GetSender()); },
                      stop);
    local->SaveHashes();
    if (stop.IsSet()) {
        throw SendCancelled();
    }
    return MakeSitePlan({.local = local->GetFiles(),
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
    CSiteSender sender({.place = setting.place,
                        .projectKey = setting.projectKey,
                        .crew = crew,
                        .journal = journal,
                        .onProgress = onProgress,
                        .now = {},
                        .onTidy = onTidy},
                       plan);
    sender.Run();
    local->SetHashes(sender.GetSentHashes());
    local->SaveHashes();
    return sender.GetWarnings();
}

void CServerDeployment::Finish()
{
    crew.Quit();
    folder.RemoveLongestUnused();
}
