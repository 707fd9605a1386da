#pragma once

#include <functional>
#include <optional>

#include <QStringList>

#include "deploy/server/LocalSite.h"
#include "deploy/server/SendTally.h"
#include "deploy/server/SessionCrew.h"
#include "deploy/server/SessionRest.h"
#include "deploy/server/SiteFolder.h"
#include "deploy/server/SiteJournal.h"
#include "deploy/server/SiteNames.h"
#include "deploy/server/SitePlan.h"

class CStopSignal;

// One run of bringing a site to a server: login, comparison, sending. Owned by the deployment, on whose
// thread it works. All operations throw as CSessionCrew::Run does.
class CServerDeployment final {
public:
    struct Setting {
        CSiteFolder::Options sites;
        QString siteKey; // tells project, server and directory
        QString projectKey;
        ServerPlace place;
        CSessionCrew::Setting crew;
    };

    // Throws as CSiteFolder does.
    explicit CServerDeployment(const Setting& setting);

    // The folder in which the site is to be made, before it is compared.
    const CSiteFolder& GetFolder() const { return folder; }

    // A login that is in doubt is to be told before all pages are made. What it has opened is kept alive
    // until Compare is called.
    void TryLogin();
    // removeLeftovers: what the site no longer has goes from the server.
    SitePlan Compare(const SiteSources& sources, bool removeLeftovers, const CStopSignal& stop);
    // Answers warnings for people. onTidy: all is sent, and leftovers are removed next.
    QStringList Send(const SitePlan& plan, const std::function<void(const SendProgress&)>& onProgress,
                     const std::function<void()>& onTidy);
    // The end after success.
    void Finish();

private:
    const Setting setting;
    const CSiteFolder folder;
    CSessionCrew crew;
    CSiteJournal journal;
    std::optional<CSessionRest> rest;
    std::optional<CLocalSite> local;
};
