#pragma once

#include <list>
#include <memory>
#include <vector>

#include <QString>

#include "ftpengine/commands/FTPCommand.h"

// A group of commands that run in order, with one rule for their replies. Base of the sequences, each of
// which adds an operation Run. Lives on the stack of a task and is used on its thread.
class CFTPCommandSequence {
public:
    using Transcript = std::vector<QString>;

    // stream and transcript belong to the task. Everything that is said is added to the transcript, but for
    // secrets.
    CFTPCommandSequence(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                        Transcript& transcript);
    virtual ~CFTPCommandSequence() = default;
    CFTPCommandSequence(const CFTPCommandSequence&) = delete;
    CFTPCommandSequence& operator=(const CFTPCommandSequence&) = delete;

protected:
    // command: borrowed until the next ExecuteCurrentSequence has ended.
    void Queue(CFTPCommand& command) { commands.push_back(&command); }

    // Runs what is queued and empties the queue. The last reply, of the group 2 or 3; throws an FTPReply of
    // the group 4 or 5, and an int: 6 for any other group, 123 before anything is sent if a name is no line.
    FTPReply ExecuteCurrentSequence();

    FTPReply Execute(CFTPCommand& command);

    const std::shared_ptr<CEvent>& GetAbortEvent() const { return abortEvent; }
    const FTPTimeouts& GetTimeouts() const { return stream.GetTimeouts(); }
    CSocketStream& GetStream() const { return stream; }

private:
    FTPReply ExecuteCommand(CFTPCommand& command);

    CSocketStream& stream;
    const std::shared_ptr<CEvent> abortEvent;
    Transcript& transcript;
    std::list<CFTPCommand*> commands;
};

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
