#pragma once

#include <cstdint>
#include <functional>

#include <QString>

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
