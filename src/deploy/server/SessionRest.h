#pragma once

#include <thread>

#include "ftpengine/net/Event.h"

class CSessionCrew;

// A time in which nobody has work for a crew, such as while pages are made: as long as this lives, its
// sessions are kept alive on a thread of their own, and the crew may do nothing else.
class CSessionRest final {
public:
    // crew: borrowed.
    explicit CSessionRest(CSessionCrew& crew);
    // Waits until what was asked of the server is answered: within the time limits of its sessions.
    ~CSessionRest();
    CSessionRest(const CSessionRest&) = delete;
    CSessionRest& operator=(const CSessionRest&) = delete;

private:
    CEvent isOver;
    std::thread thread;
};
