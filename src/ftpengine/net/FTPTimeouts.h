#pragma once

#include <chrono>

// A wait that ends only by what is waited for.
inline constexpr std::chrono::milliseconds NoLimit = std::chrono::milliseconds::max();

// How long the engine waits for what. Servers and networks are slow: tests alone shorten
// them.
struct FTPTimeouts {
    using Milliseconds = std::chrono::milliseconds;

    Milliseconds send{30000};          // for a command to be taken
    Milliseconds reply{60000};         // without a byte of a reply, a preliminary one included
    Milliseconds greeting{30000};      // for the greeting to begin
    Milliseconds preliminary{3600000}; // for preliminary replies to come to their final one
    Milliseconds stopWorker{60000};    // for a worker to end by itself
    Milliseconds dataStall{60000};     // without a byte on a data connection, its opening included
    Milliseconds afterData{300000};    // for the reply after the last byte of a file: servers scan files
    Milliseconds lastWords{5000};      // for a server to say why a data connection broke
    Milliseconds lookUp{60000};        // for the addresses of a name
    Milliseconds connect{20000};       // for each of these addresses
};
