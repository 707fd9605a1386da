#pragma once

#include <chrono>

// A wait that ends only by what is waited for.
inline constexpr std::chrono::milliseconds NoLimit = std::chrono::milliseconds::max();

// How long the engine waits for what. Servers and networks are slow: tests alone shorten
// them.
struct FTPTimeouts {
    using Milliseconds = std::chrono::milliseconds;

    Milliseconds send{30000};           // for a command to be taken
    Milliseconds reply{60000};          // for each reply, a preliminary one included
    Milliseconds greetingSilence{1000}; // ends the greeting; without any greeting it is a time-out
    Milliseconds segmentSilence{250};   // ends a receive on the control connection that has begun
    Milliseconds stopWorker{60000}; // for a worker to end by itself (never used for the sending of a file)
    Milliseconds dataStall{60000};  // for a data connection to be opened, or to take another byte of a file
};
