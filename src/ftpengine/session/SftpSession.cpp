#include "ftpengine/session/SftpSession.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

#include <QIODevice>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/sftp/SftpDownload.h"
#include "ftpengine/sftp/SftpListing.h"
#include "ftpengine/sftp/SftpUpload.h"
#include "ftpengine/ssh/SshChannelStream.h"
#include "ftpengine/ssh/SshLogin.h"
#include "resources/StringTable.h"

namespace {

// The server's umask takes away what its administrator doesn't want.
constexpr uint32_t filePermissions = 0644;
constexpr uint32_t directoryPermissions = 0755;

const char* const posixRename = "posix-rename@openssh.com";
const char* const fileSystemStatus = "statvfs@openssh.com";

CSftpRequest OfPath(SftpType type, std::string_view path)
{
    return CSftpRequest(type).AddString(path);
}

bool IsAnyOf(const SftpStatus& status, uint32_t one, uint32_t other)
{
    return status.code == one || status.code == other;
}

} // namespace

std::unique_ptr<CRemoteSession> OpenSftpSession(const SessionSetting& setting, SessionLog& log)
{
    auto connection = std::make_unique<CSshConnection>(setting, log);
    LogIn(*connection, setting, log);
    return std::make_unique<CSftpSession>(std::make_unique<CSshChannelStream>(std::move(connection)),
                                          setting.destination.directory, log);
}

CSftpSession::CSftpSession(std::unique_ptr<CSftpStream> openStream, const QString& directory, SessionLog& log)
    : log(log), stream(std::move(openStream)), channel(*stream)
{
    channel.Start();
    Enter(directory);
}

void CSftpSession::Enter(const QString& directory)
{
    base = FindPath(".");
    if (directory.isEmpty()) {
        return;
    }
    QString seen = directory;
    if (seen == QLatin1String("~") || seen.startsWith(QLatin1String("~/"))) {
        seen.remove(0, 2);
    }
    base = Locate(seen);
    Note("STAT", directory);
    const SftpAnswer answer = Demand(SftpType::Attrs, OfPath(SftpType::Stat, base), directory);
    const SftpAttributes attributes = CSftpFields(answer.fields).TakeAttributes();
    if (attributes.permissions && !attributes.IsDirectory()) {
        Refuse(MakeRefusal(RefusalCode::NotAvailable, Text(StringId::NoDirectoryOnServer, directory)));
    }
}

// Absolute, as the server sees it.
std::string CSftpSession::FindPath(std::string_view path)
{
    const QString shown = Widen(path);
    Note("REALPATH", shown);
    const auto names = Demand(SftpType::Name, OfPath(SftpType::RealPath, path), shown).ReadNames();
    if (names.empty()) {
        ThrowTracedLiterally("CSftpSession, no path", EngineStatus::UnknownReply);
    }
    return names.front().name;
}

std::string CSftpSession::Locate(const QString& path) const
{
    // Refused although a server could take them: no file of such a name could be shown or moved elsewhere.
    const bool isUsable = std::none_of(path.begin(), path.end(), [](QChar character) {
        return character.isNull() || character == QLatin1Char('\r') || character == QLatin1Char('\n');
    });
    if (!isUsable) {
        ThrowTracedLiterally("CSftpSession, line break in a name", EngineStatus::InvalidName);
    }
    return path.startsWith(QLatin1Char('/')) ? Narrow(path) : JoinRemotePath(base, Narrow(path));
}

void CSftpSession::Note(const char* command, const QString& path)
{
    log.transcript.push_back(QLatin1String(command) + QLatin1Char(' ') + path);
}

void CSftpSession::Refuse(const FTPReply& reply)
{
    log.transcript.push_back(reply.text.trimmed());
    throw reply;
}

SftpAnswer CSftpSession::Demand(SftpType type, const CSftpRequest& request, const QString& path)
{
    SftpAnswer answer = channel.Ask(request);
    const auto status = answer.ReadStatus();
    if (status && status->code != SftpCode::Ok) {
        Refuse(TranslateRefusal(*status, path));
    }
    if (answer.type != type) {
        ThrowTracedLiterally("CSftpSession, answer of another kind", EngineStatus::UnknownReply);
    }
    return answer;
}

void CSftpSession::DemandDone(const CSftpRequest& request, const QString& path)
{
    Demand(SftpType::Status, request, path);
}

std::string CSftpSession::Open(SftpType type, const CSftpRequest& request, const QString& path)
{
    Note(type == SftpType::OpenDir ? "OPENDIR" : "OPEN", path);
    const SftpAnswer answer = Demand(SftpType::Handle, request, path);
    return std::string(CSftpFields(answer.fields).TakeString());
}

// What was to be known of the handle is known already.
void CSftpSession::CloseQuietly(const std::string& handle)
{
    channel.Ask(OfPath(SftpType::Close, handle));
}

std::vector<SftpEntry> CSftpSession::ReadEntries(const QString& directory)
{
    const std::string handle =
        Open(SftpType::OpenDir, OfPath(SftpType::OpenDir, Locate(directory)), directory);
    SftpListing listing = ReadListing(channel, handle);
    CloseQuietly(handle);
    if (listing.end.code != SftpCode::EndOfFile) {
        Refuse(TranslateRefusal(listing.end, directory));
    }
    return std::move(listing.entries);
}

std::vector<RemoteEntry> CSftpSession::List(const QString& directory)
{
    std::vector<SftpEntry> read = ReadEntries(directory);
    FollowLinks(channel, Locate(directory), read);
    std::vector<RemoteEntry> entries;
    entries.reserve(read.size());
    std::transform(read.begin(), read.end(), std::back_inserter(entries), MakeRemoteEntry);
    return entries;
}

QString CSftpSession::ListInWords(const QString& directory)
{
    QString words;
    for (const SftpEntry& entry : ReadEntries(directory)) {
        words += Widen(entry.longName.empty() ? entry.name : entry.longName) + QLatin1Char('\n');
    }
    return words;
}

void CSftpSession::MakeDirectory(const QString& path)
{
    Note("MKDIR", path);
    CSftpRequest request = OfPath(SftpType::MkDir, Locate(path));
    request.AddPermissions(directoryPermissions);
    const auto status = channel.Ask(request).ReadStatus();
    if (!status) {
        ThrowTracedLiterally("CSftpSession, answer of another kind", EngineStatus::UnknownReply);
    }
    if (status->code == SftpCode::Ok) {
        return;
    }
    // No code says that it is there already.
    const auto attributes = FindAttributes(path);
    if (!attributes || !attributes->IsDirectory()) {
        Refuse(TranslateRefusal(*status, path));
    }
}

void CSftpSession::Rename(const QString& oldPath, const QString& newPath)
{
    Note("RENAME", oldPath + QStringLiteral(" -> ") + newPath);
    const std::string from = Locate(oldPath);
    const std::string to = Locate(newPath);
    if (channel.Offers(posixRename)) {
        DemandDone(CSftpRequest(SftpType::Extended).AddString(posixRename).AddString(from).AddString(to),
                   newPath);
        return;
    }
    // Version 3 refuses a name that is taken.
    const CSftpRequest request = CSftpRequest(SftpType::Rename).AddString(from).AddString(to);
    const auto status = channel.Ask(request).ReadStatus();
    if (status && status->code == SftpCode::Ok) {
        return;
    }
    if (FindAttributes(oldPath) && FindAttributes(newPath)) {
        DemandDone(OfPath(SftpType::Remove, to), newPath);
    }
    DemandDone(request, newPath);
}

void CSftpSession::RemoveFile(const QString& path)
{
    Note("REMOVE", path);
    DemandDone(OfPath(SftpType::Remove, Locate(path)), path);
}

void CSftpSession::RemoveDirectory(const QString& path)
{
    Note("RMDIR", path);
    DemandDone(OfPath(SftpType::RmDir, Locate(path)), path);
}

void CSftpSession::Send(QIODevice& source, const QString& path, const Progress& progress)
{
    CSftpRequest request = OfPath(SftpType::Open, Locate(path));
    request.AddUint32(SftpOpen::Write | SftpOpen::Create | SftpOpen::Truncate)
        .AddPermissions(filePermissions);
    const std::string handle = Open(SftpType::Open, request, path);
    const CSftpUpload::Result result = CSftpUpload(channel, handle, source).Run(progress);
    if (result.refusal) {
        const bool isFull = result.refusal->code == SftpCode::Failure && IsFull(path);
        Refuse(isFull ? MakeRefusal(RefusalCode::NoSpace, Text(StringId::ServerHasNoSpace, path))
                      : TranslateRefusal(*result.refusal, path));
    }
    if (!result.isSourceRead) {
        ThrowTraced("CSftpSession, the source can't be read: ", EngineStatus::FromErrno(EIO));
    }
    if (result.size && *result.size != result.sent) {
        Refuse(MakeRefusal(RefusalCode::Incomplete,
                           Text(StringId::ServerHoldsOtherSize, path, QString::number(*result.size),
                                QString::number(result.sent))));
    }
}

// Usual servers say "Failure" and nothing else when their disk is full, but tell of the disk when asked.
bool CSftpSession::IsFull(const QString& path)
{
    if (!channel.Offers(fileSystemStatus)) {
        return false;
    }
    const SftpAnswer answer =
        channel.Ask(CSftpRequest(SftpType::Extended).AddString(fileSystemStatus).AddString(Locate(path)));
    if (answer.type != SftpType::ExtendedReply) {
        return false;
    }
    CSftpFields fields(answer.fields);
    fields.TakeUint64(); // the block that the system likes best
    const uint64_t unit = fields.TakeUint64();
    fields.TakeUint64(); // all blocks
    fields.TakeUint64(); // those that the administrator may still use
    const uint64_t available = fields.TakeUint64();
    constexpr uint64_t hardlyAnything = 65536; // bytes; what was refused is as large as 32 KiB
    return available <= hardlyAnything / std::max<uint64_t>(unit, 1);
}

std::optional<QByteArray> CSftpSession::Read(const QString& path, int64_t maximum)
{
    Note("OPEN", path);
    CSftpRequest request = OfPath(SftpType::Open, Locate(path));
    request.AddUint32(SftpOpen::Read).AddUint32(0); // no attributes
    const SftpAnswer answer = channel.Ask(request);
    if (const auto status = answer.ReadStatus()) {
        if (IsAnyOf(*status, SftpCode::NoSuchFile, SftpCode::NoSuchPath)) {
            return std::nullopt;
        }
        Refuse(TranslateRefusal(*status, path));
    }
    if (answer.type != SftpType::Handle) {
        ThrowTracedLiterally("CSftpSession, answer of another kind", EngineStatus::UnknownReply);
    }
    const std::string handle(CSftpFields(answer.fields).TakeString());
    SftpContent content = ReadContent(channel, handle, maximum);
    CloseQuietly(handle);
    if (content.refusal) {
        Refuse(TranslateRefusal(*content.refusal, path));
    }
    if (content.bytes.size() > maximum) {
        ThrowTracedLiterally("CSftpSession, file too large", EngineStatus::MessageTooLong);
    }
    return std::move(content.bytes);
}

std::optional<int64_t> CSftpSession::GetSize(const QString& path)
{
    const auto attributes = FindAttributes(path);
    if (!attributes || attributes->IsDirectory() || !attributes->size) {
        return std::nullopt;
    }
    return static_cast<int64_t>(*attributes->size);
}

// Of what a link leads to. Nothing if there is no such file.
std::optional<SftpAttributes> CSftpSession::FindAttributes(const QString& path)
{
    Note("STAT", path);
    const SftpAnswer answer = channel.Ask(OfPath(SftpType::Stat, Locate(path)));
    const auto status = answer.ReadStatus();
    if (status && !IsAnyOf(*status, SftpCode::NoSuchFile, SftpCode::NoSuchPath)) {
        Refuse(TranslateRefusal(*status, path));
    }
    if (status) {
        return std::nullopt;
    }
    return CSftpFields(answer.fields).TakeAttributes();
}

void CSftpSession::KeepAlive()
{
    FindPath(".");
}

void CSftpSession::Quit()
{
    stream->Close();
}
