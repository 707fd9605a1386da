#include "shell/ftpdialogs/EngineRetirement.h"

#include <thread>

#include "ftpengine/FTPEngine.h"

void RetireEngine(std::unique_ptr<CFTPEngine> engine)
{
    engine->Cancel();
    std::thread([retired = std::move(engine)]() mutable { retired.reset(); }).detach();
}
