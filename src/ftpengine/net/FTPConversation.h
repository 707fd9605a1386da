#pragma once

#include <memory>
#include <vector>

#include <QString>

#include "ftpengine/net/Event.h"
#include "ftpengine/net/FTPReply.h"
#include "ftpengine/net/SocketStream.h"

// What the sequences of one task share. Borrows everything from the task's Execute.
struct FTPConversation {
    CSocketStream& stream;
    const std::shared_ptr<CEvent>& abortEvent;
    std::vector<QString>& transcript;
    FTPReply& reply; // the last one of a sequence that ran to its end

    template <class Sequence, class... Arguments>
    FTPReply Run(Arguments&&... arguments)
    {
        Sequence sequence(stream, abortEvent, transcript);
        reply = sequence.Run(std::forward<Arguments>(arguments)...);
        return reply;
    }
};
