#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include <QString>

#include "deploy/DeployJob.h"
#include "ftpengine/net/FTPTimeouts.h"

class CFTPDestinations;

// What the wizard needs of the program around it.
struct DeployWizardServices {
    CFTPDestinations* destinations = nullptr; // borrowed; outlives the wizard
    // Opens the first page of a deployed site, named by its path, in the web browser.
    std::function<void(const QString& path)> openSite;
    // Where records of deployments to folders are kept; empty: none is.
    QString recordsFolder = {};
    FTPTimeouts timeouts = {};
    // Of a new connection; no page asks for it.
    uint16_t port = 21;
};

// In place of the key of a stored connection: a new one.
inline constexpr int32_t NoDestination = -1;

// What the pages of one wizard share. The choices are job.settings; they go to the project at the end only.
// Owned by the wizard.
struct DeployWizardState {
    CGalleryProject& project;
    const DeployWizardServices services;
    CDeployJob job;
    std::optional<DeployError> error; // of the last run
    DeployDoubts doubts = {};         // what the job has found for the chosen target

    CFTPDestinations& Destinations() const { return *services.destinations; }
};
