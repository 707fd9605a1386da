#pragma once

#include <functional>
#include <optional>

#include <QString>

#include "deploy/Deployment.h"
#include "deploy/ServerTargets.h"
#include "document/project/DeploySettings.h"

class CFTPDestinations;

// What the wizard needs of the program around it.
struct DeployWizardServices {
    CFTPDestinations* destinations = nullptr; // borrowed; outlives the wizard
    // Opens the first page of a deployed site, named by its path, in the web browser.
    std::function<void(const QString& path)> openSite;
    // Where records of deployments to folders and the sites of servers are kept.
    QString recordsFolder = {};
    QString sitesFolder = {};
    ServerAccess access = {};
};

// In place of the key of a stored connection: a new one.
inline constexpr int32_t NoDestination = -1;

// What the pages of one wizard share. Owned by the wizard.
struct DeployWizardState {
    CGalleryProject& project;
    const DeployWizardServices services;
    CDeploySettings settings; // the choices; they go to the project at the end only

    std::optional<DeployFailure> error = {}; // of the last run

    // What a person should decide about the chosen target, and what was decided.
    DeployDoubts doubts = {};
    bool leaveOutMissing = false;
    bool overwrite = false;
    // The last run has ended with these doubts: no page looks for others before they are decided.
    bool isUndecided = false;
    // They are decided now, and the run is to go on.
    bool goesOn = false;

    CFTPDestinations& Destinations() const { return *services.destinations; }
};
