#include "deploy/server/SessionRest.h"

#include <system_error>

#include "deploy/server/SessionCrew.h"

CSessionRest::CSessionRest(CSessionCrew& crew)
{
    try {
        thread = std::thread([this, &crew] {
            while (!isOver.Wait(crew.GetLongestQuiet())) {
                crew.KeepAlive();
            }
        });
    } catch (const std::system_error&) {
        // Without a thread: sessions that the server has closed by then are opened anew.
    }
}

CSessionRest::~CSessionRest()
{
    isOver.Set();
    if (thread.joinable()) {
        thread.join();
    }
}
