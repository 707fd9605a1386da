#include "ftpengine/session/FTPSession.h"

#include <QDateTime>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/messages/RemoteListing.h"
#include "ftpengine/session/DeviceSender.h"
#include "ftpengine/session/FTPLogin.h"
#include "ftpengine/session/FTPReplyValues.h"
#include "resources/StringTable.h"

namespace {

// A server that lists without end must not fill the memory.
constexpr std::size_t maximalListingSize = 64 * 1024 * 1024;

constexpr int32_t notThereOrNotAllowed = 550;

// RFC 959, 4.2.1: the server doesn't know the command, or not in this form.
bool IsUnknownCommand(const FTPReply& refusal)
{
    return refusal.code >= 500 && refusal.code <= 504;
}

} // namespace

CFTPSession::CFTPSession(const SessionSetting& setting, SessionLog& log)
    : setting(setting),
      log(log),
      stream(setting.timeouts),
      dialogue(stream, setting.abortEvent, log.transcript)
{}

void CFTPSession::Open()
{
    ConnectAndLogIn(setting, stream, log);
    features = dialogue.AgreeOnFeatures();
    dialogue.Say("TYPE", "I");
    if (!setting.destination.directory.isEmpty()) {
        dialogue.Say("CWD", Narrow(setting.destination.directory));
    }
    base = ReadQuotedPath(dialogue.Ask("PWD"));
}

std::vector<RemoteEntry> CFTPSession::List(const QString& directory)
{
    if (features.mlst) {
        try {
            return ListByFacts(Narrow(directory));
        } catch (const FTPReply& refusal) {
            if (!IsUnknownCommand(refusal)) {
                throw;
            }
            features.mlst = false;
        }
    }
    return ListByLines(Narrow(directory));
}

std::vector<RemoteEntry> CFTPSession::ListByFacts(const std::string& directory)
{
    return ReadFacts(Receive("MLSD", directory, maximalListingSize));
}

// In the directory itself: servers differ in what they take for an option in the argument of LIST, and some
// answer a directory that isn't there with an empty listing.
std::string CFTPSession::ReceiveIn(const std::string& directory, const std::function<std::string()>& receive)
{
    if (!directory.empty()) {
        dialogue.Say("CWD", directory);
    }
    std::string listing;
    try {
        listing = receive();
    } catch (const FTPReply&) {
        ReturnToBase();
        throw;
    }
    if (!directory.empty()) {
        ReturnToBase();
    }
    return listing;
}

std::vector<RemoteEntry> CFTPSession::ListByLines(const std::string& directory)
{
    return ReadListed(ReceiveIn(directory, [this] { return ReceiveListing(); }),
                      QDateTime::currentDateTimeUtc());
}

QString CFTPSession::ListInWords(const QString& directory)
{
    return Widen(ReceiveIn(Narrow(directory), [this] { return Receive("LIST", {}, maximalListingSize); }));
}

// "-a" shows the names that begin with "."; a server that takes it for a name refuses it or shows nothing.
std::string CFTPSession::ReceiveListing()
{
    std::string listing;
    if (listsHidden) {
        try {
            listing = Receive("LIST", "-a", maximalListingSize);
        } catch (const FTPReply& refusal) {
            if (refusal.GetGroup() != 5) {
                throw;
            }
        }
        listsHidden = !listing.empty();
    }
    return listsHidden ? listing : Receive("LIST", {}, maximalListingSize);
}

void CFTPSession::MakeDirectory(const QString& path)
{
    try {
        dialogue.Say("MKD", Narrow(path));
    } catch (const FTPReply&) {
        // Servers tell neither by a number of its own nor alike that it is there already.
        if (!IsDirectory(Narrow(path))) {
            throw;
        }
    }
}

void CFTPSession::Rename(const QString& oldPath, const QString& newPath)
{
    dialogue.Say("RNFR", Narrow(oldPath));
    try {
        dialogue.Say("RNTO", Narrow(newPath));
    } catch (const FTPReply& refusal) {
        // Some servers don't replace what is there. If nothing is, the refusal has another reason.
        if (refusal.GetGroup() != 5 || !dialogue.TryToAsk("DELE", Narrow(newPath))) {
            throw;
        }
        dialogue.Say("RNFR", Narrow(oldPath));
        dialogue.Say("RNTO", Narrow(newPath));
    }
}

void CFTPSession::RemoveFile(const QString& path)
{
    dialogue.Say("DELE", Narrow(path));
}

void CFTPSession::RemoveDirectory(const QString& path)
{
    dialogue.Say("RMD", Narrow(path));
}

void CFTPSession::Send(QIODevice& source, const QString& path, const Progress& progress)
{
    CDeviceSender sender(dialogue.AskForEndpoint(features.epsv), source, progress);
    dialogue.Transfer("STOR", Narrow(path), sender);
    const auto size = GetSize(path);
    if (size && *size != sender.GetSent()) {
        throw MakeRefusal(RefusalCode::Incomplete,
                          Text(StringId::ServerHoldsOtherSize, path, QString::number(*size),
                               QString::number(sender.GetSent())));
    }
}

std::optional<QByteArray> CFTPSession::Read(const QString& path, int64_t maximum)
{
    try {
        const std::string bytes = Receive("RETR", Narrow(path), static_cast<std::size_t>(maximum));
        return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
    } catch (const FTPReply& refusal) {
        if (refusal.code != notThereOrNotAllowed) {
            throw;
        }
        return std::nullopt;
    }
}

std::optional<int64_t> CFTPSession::GetSize(const QString& path)
{
    if (!features.size) {
        return std::nullopt;
    }
    const auto reply = dialogue.TryToAsk("SIZE", Narrow(path));
    return reply ? ReadSize(*reply) : std::nullopt;
}

void CFTPSession::KeepAlive()
{
    dialogue.TryToAsk("NOOP");
}

void CFTPSession::Quit()
{
    try {
        dialogue.TryToAsk("QUIT");
    } catch (int error) {
        TraceNumber("Quit throws: ", error);
    }
}

// The bytes of the command's data connection. Throws 10040 for more than the maximum.
std::string CFTPSession::Receive(std::string_view verb, std::string_view argument, std::size_t maximum)
{
    CDataReceiver receiver(dialogue.AskForEndpoint(features.epsv), maximum);
    dialogue.Transfer(verb, argument, receiver);
    return receiver.TakeBytes();
}

bool CFTPSession::IsDirectory(const std::string& path)
{
    if (!dialogue.TryToAsk("CWD", path)) {
        return false;
    }
    ReturnToBase();
    return true;
}

void CFTPSession::ReturnToBase()
{
    dialogue.Say("CWD", base);
}

std::unique_ptr<CRemoteSession> OpenFTPSession(const SessionSetting& setting, SessionLog& log)
{
    auto session = std::make_unique<CFTPSession>(setting, log);
    session->Open();
    return session;
}
