#pragma once

#include <memory>

#include "cli/NamedDestinations.h"

// The stored destinations of the running program, with the settings and the keys that they need. Belongs to
// one run of a command; single-threaded.
class CDestinationSession {
public:
    CDestinationSession();

    CNamedDestinations& GetDestinations() { return destinations; }

private:
    const std::unique_ptr<CSettingsStore> settings;
    const CPasswordProtection protection;
    CNamedDestinations destinations;
};
