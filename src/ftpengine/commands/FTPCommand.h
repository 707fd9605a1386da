#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/SocketStream.h"
#include "ftpengine/secrets/SecretText.h"

// A line break or a zero byte in a name: a command with it would be two (RFC 959, 4.1).
bool BreaksLine(const QString& name);
bool BreaksLine(std::string_view bytes);

// One exchange of a command and its reply. Used once, on the task's thread; lives on the stack of its
// sequence.
class CFTPCommand {
public:
    using Milliseconds = std::chrono::milliseconds;

    // text: without the line end, which is added; "" for a command that sends nothing.
    explicit CFTPCommand(std::string_view text);
    // The blank between them is there even if the argument is empty.
    CFTPCommand(std::string_view verb, std::string_view argument);
    virtual ~CFTPCommand() = default;
    CFTPCommand(const CFTPCommand&) = delete;
    CFTPCommand& operator=(const CFTPCommand&) = delete;

    // Sends the text and waits for the final reply; each preliminary one (1yz) starts the time-out anew.
    // Throws an int, see CSocketStream. A reply of any other kind is returned, whatever it says.
    virtual FTPReply Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                             Milliseconds sendTimeout, Milliseconds receiveTimeout);

    // As it goes out.
    const std::string& GetText() const { return text; }
    // As the transcript shows it.
    virtual std::string GetShownText() const { return text; }
    // All lines of the final reply, after Execute.
    const std::string& GetWholeReply() const { return wholeReply; }

    // False if a name in the text holds a line break or a zero byte: such a text would be two commands.
    bool IsOneLine() const;

protected:
    // Leaves nothing of the text in memory.
    void Wipe() { WipeText(text); }
    // Waits for the final reply. firstTimeout: for the first byte of it, timeout: without one from then on.
    FTPReply AwaitReply(CSocketStream& stream, Milliseconds firstTimeout, Milliseconds timeout);

private:
    std::string text;
    std::string wholeReply;
};

// Passes over the preliminary replies to one command (1yz), within a limit of time and of bytes.
class CPreliminaryReplies {
public:
    // limit: may be NoLimit.
    explicit CPreliminaryReplies(std::chrono::milliseconds limit);

    // Throws an int: 10060 or 10040 if there is no end of them.
    bool Includes(std::string_view reply);

private:
    const std::chrono::steady_clock::time_point deadline;
    std::size_t bytes = 0;
};

// "USER anna"
class CFTPCommandUser final : public CFTPCommand {
public:
    explicit CFTPCommandUser(std::string_view user);
};

class CFTPCommandPassword final : public CFTPCommand {
public:
    // password: or the response to a challenge. The command's own copy is wiped with it.
    explicit CFTPCommandPassword(std::string_view password);
    ~CFTPCommandPassword() override;

    // "PASS ****": a transcript is shown, copied and sent to others.
    std::string GetShownText() const override;
};

class CFTPCommandChangeDirectory final : public CFTPCommand {
public:
    explicit CFTPCommandChangeDirectory(std::string_view path);
};

class CFTPCommandCreateDirectory final : public CFTPCommand {
public:
    explicit CFTPCommandCreateDirectory(std::string_view name);
};

class CFTPCommandRenameFrom final : public CFTPCommand {
public:
    explicit CFTPCommandRenameFrom(std::string_view name);
};

class CFTPCommandRenameTo final : public CFTPCommand {
public:
    explicit CFTPCommandRenameTo(std::string_view name);
};

// Waits for what a server says at first. Sends nothing and has a time-out of its own for the begin.
class CFTPCommandWelcomeReply final : public CFTPCommand {
public:
    CFTPCommandWelcomeReply();

    // The greeting, with all its lines as its text.
    FTPReply Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                     Milliseconds sendTimeout, Milliseconds receiveTimeout) override;
};
