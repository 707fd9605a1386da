#pragma once

#include <set>

#include "deploy/server/SessionCrew.h"
#include "deploy/server/SiteNames.h"
#include "deploy/server/SitePlan.h"

class CSiteJournal;

// What to look at.
struct ServerLook {
    ServerPlace place;
    QString projectKey;
    std::vector<LocalFile> local; // whose directories are of interest
};

// Reads the project's manifest, completes it by this computer's own notes, and lists the directories that the
// site is concerned with. Changes nothing. Throws as CSessionCrew::Run does.
RemoteSite LookAtServer(CSessionCrew& crew, const ServerLook& look, const CSiteJournal& journal);
