#pragma once

#include <optional>

#include "deploy/DeployJob.h"
#include "shell/wizard/DeployWizardServices.h"

// What the pages of one wizard share. The choices are job.settings; they go to the project at the end only.
// Owned by the wizard.
struct DeployWizardState {
    CGalleryProject& project;
    const DeployWizardServices services;
    CDeployJob job;
    std::optional<DeployError> error; // of the last run

    CFTPDestinations& Destinations() const { return *services.destinations; }
};
