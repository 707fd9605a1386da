#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/SocketStream.h"

// One exchange of a command and its reply. Used once, on the task's thread; lives on the stack of its
// sequence.
class CFTPCommand {
public:
    using Milliseconds = std::chrono::milliseconds;

    // text: without the line end, which is added; "" for a command that sends nothing.
    explicit CFTPCommand(std::string_view text);
    virtual ~CFTPCommand() = default;
    CFTPCommand(const CFTPCommand&) = delete;
    CFTPCommand& operator=(const CFTPCommand&) = delete;

    // Sends the text and waits for the final reply; each preliminary one (1yz) starts the time-out anew.
    // Throws an int, see CSocketStream. A reply of any other kind is returned, whatever it says.
    virtual FTPReply Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                             Milliseconds sendTimeout, Milliseconds receiveTimeout);

    // As it goes out.
    const std::string& GetText() const { return text; }

    // False if a name in the text holds a line break or a zero byte: such a text would be two commands.
    bool IsOneLine() const;

private:
    const std::string text;
};

// "USER anna"
class CFTPCommandUser final : public CFTPCommand {
public:
    explicit CFTPCommandUser(std::string_view user);
};

class CFTPCommandPassword final : public CFTPCommand {
public:
    // password: or the response to a challenge.
    explicit CFTPCommandPassword(std::string_view password);
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

// Waits for what a server says at first. Sends nothing and has a time-out of its own.
class CFTPCommandWelcomeReply final : public CFTPCommand {
public:
    CFTPCommandWelcomeReply();

    // The last chunk before a second of silence, or before the peer's close. Throws 10060 if that second is
    // the first.
    FTPReply Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                     Milliseconds sendTimeout, Milliseconds receiveTimeout) override;
};
