#include "cli/DestinationSession.h"

#include "common/Platform.h"

CDestinationSession::CDestinationSession()
    : settings(CreateProgramSettings()),
      protection(FindDataFolder(), FindMachineSettingsFolder()),
      destinations(*settings, protection)
{}
