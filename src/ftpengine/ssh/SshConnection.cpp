#include "ftpengine/ssh/SshConnection.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <libssh/libssh.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/Connection.h"
#include "ftpengine/ssh/KnownHosts.h"
#include "ftpengine/ssh/SshKeyFile.h"

namespace {

// Kinds of host keys in the order of preference. RSA with SHA-1 isn't among them.
const char* const hostKeyKinds[] = {"ssh-ed25519",         "ecdsa-sha2-nistp256", "ecdsa-sha2-nistp384",
                                    "ecdsa-sha2-nistp521", "rsa-sha2-512",        "rsa-sha2-256"};

// Those that processors have instructions for come first: all of them are as safe.
const char* const ciphers = "aes128-gcm@openssh.com,aes256-gcm@openssh.com,chacha20-poly1305@openssh.com,"
                            "aes256-ctr,aes192-ctr,aes128-ctr";

// Nothing is read from files that this program doesn't know of: what is known is looked up by KnownHosts.
const char* const nothing = "/dev/null";

// An RSA key signs in several ways.
bool IsOfKind(const QByteArray& offered, const QByteArray& known)
{
    return known == "ssh-rsa" ? offered.startsWith("rsa-") : offered == known;
}

// The kinds that are known of this server come first: it would show a key that can't be compared otherwise.
QByteArray OrderKinds(const std::vector<KnownHostKey>& known)
{
    QByteArray first;
    QByteArray rest;
    for (const char* kind : hostKeyKinds) {
        const bool isKnown = std::any_of(known.begin(), known.end(), [kind](const KnownHostKey& key) {
            return IsOfKind(kind, KindOfHostKey(key.blob));
        });
        (isKnown ? first : rest) += QByteArray(kind) + ',';
    }
    const QByteArray all = first + rest;
    return all.chopped(1);
}

bool IsSameSocket(int one, int other)
{
    struct stat first;
    struct stat second;
    return ::fstat(one, &first) == 0 && ::fstat(other, &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

QByteArray BlobOf(ssh_key key)
{
    char* text = nullptr;
    if (ssh_pki_export_pubkey_base64(key, &text) != SSH_OK) {
        return {};
    }
    const QByteArray blob = QByteArray::fromBase64(text);
    ssh_string_free_char(text);
    return blob;
}

CSocket Connect(const SessionSetting& setting)
{
    CSocket socket = ConnectToServer(setting.destination, setting.timeouts, *setting.abortEvent);
    const int on = 1;
    // Requests are small and wait for answers: none may wait for company.
    ::setsockopt(socket.GetDescriptor(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return socket;
}

} // namespace

CLentDescriptor::CLentDescriptor(const CSocket& socket)
    : socket(socket), descriptor(::fcntl(socket.GetDescriptor(), F_DUPFD_CLOEXEC, 0))
{
    if (descriptor < 0) {
        ThrowTraced("CLentDescriptor, fcntl throws: ", EngineStatus::FromErrno(errno));
    }
}

CLentDescriptor::~CLentDescriptor()
{
    if (IsSameSocket(descriptor, socket.GetDescriptor())) {
        ::close(descriptor);
    }
}

void CSshConnection::CloseSession::operator()(ssh_session_struct* session) const
{
    ssh_disconnect(session);
    ssh_free(session);
}

CSshConnection::CSshConnection(const SessionSetting& setting, SessionLog& log)
    : abortEvent(setting.abortEvent),
      silence(setting.timeouts.reply),
      log(log),
      socket(Connect(setting)),
      lent(socket),
      session(ssh_new())
{
    if (!session) {
        throw EngineStatus::NoBufferSpace;
    }
    const auto known =
        FindKnownHostKeys(setting.trustFolder, setting.destination.server, setting.destination.port);
    SetOptions(setting.destination.userName, OrderKinds(known));
    ShakeHands();
    ServerIdentity identity = ReadIdentity();
    identity.server = setting.destination.server;
    identity.port = setting.destination.port;
    identity.doubt = JudgeHostKey(known, identity.hostKey);
    log.identity = identity;
    Require(identity, setting.destination.fingerprint);
}

void CSshConnection::SetOptions(const QString& userName, const QByteArray& kinds)
{
    const auto set = [this](ssh_options_e option, const void* value) {
        if (ssh_options_set(session.get(), option, value) != SSH_OK) {
            ThrowTracedLiterally("CSshConnection, option refused", EngineStatus::InvalidName);
        }
    };
    const bool readsFiles = false;
    set(SSH_OPTIONS_PROCESS_CONFIG, &readsFiles);
    set(SSH_OPTIONS_KNOWNHOSTS, nothing);
    set(SSH_OPTIONS_GLOBAL_KNOWNHOSTS, nothing);
    // It connects to nothing by itself, and would refuse some names that the system finds.
    set(SSH_OPTIONS_HOST, "server");
    // Without one the user has the same name there as here.
    if (!userName.isEmpty()) {
        set(SSH_OPTIONS_USER, Narrow(userName).c_str());
    }
    const int descriptor = lent.Get();
    set(SSH_OPTIONS_FD, &descriptor);
    set(SSH_OPTIONS_CIPHERS_C_S, ciphers);
    set(SSH_OPTIONS_CIPHERS_S_C, ciphers);
    set(SSH_OPTIONS_HOSTKEYS, kinds.constData());
    ssh_set_blocking(session.get(), 0);
}

void CSshConnection::ShakeHands()
{
    if (Repeat(SSH_AGAIN, [this] { return ssh_connect(session.get()); }) != SSH_OK) {
        log.transcript.push_back(GetFailure());
        Fail(EngineStatus::TlsFailed);
    }
}

// What the server has shown of itself, whether or not it is to be taken.
ServerIdentity CSshConnection::ReadIdentity()
{
    ssh_key shown = nullptr;
    if (ssh_get_server_publickey(session.get(), &shown) != SSH_OK) {
        Fail(EngineStatus::TlsFailed);
    }
    const OwnedSshKey key(shown);
    ServerIdentity identity;
    identity.hostKey = BlobOf(shown);
    identity.fingerprint = QCryptographicHash::hash(identity.hostKey, QCryptographicHash::Sha256);
    identity.subject = QString::fromLatin1(KindOfHostKey(identity.hostKey));
    log.transcript.push_back(identity.subject + QLatin1Char(' ') + identity.FormatFingerprint());
    return identity;
}

// only: the one fingerprint to be taken; empty if all are that are in no doubt.
void CSshConnection::Require(const ServerIdentity& identity, const QByteArray& only)
{
    const bool isTrusted =
        only.isEmpty() ? identity.doubt == ServerIdentity::Doubt::None : identity.fingerprint == only;
    if (!isTrusted) {
        ThrowTracedLiterally("CSshConnection, unknown host key", EngineStatus::UntrustedServer);
    }
}

int CSshConnection::Repeat(int again, const std::function<int()>& step)
{
    int result = step();
    while (result == again) {
        Wait();
        result = step();
    }
    return result;
}

void CSshConnection::Wait()
{
    const int descriptor = socket.GetDescriptor();
    const bool hasMoreToSend = (ssh_get_poll_flags(session.get()) & SSH_WRITE_PENDING) != 0;
    const WaitedDescriptor abort = UntilSet(*abortEvent);
    const WaitResult result = hasMoreToSend ? WaitForFirst({abort, {descriptor}, {descriptor, true}}, silence)
                                            : WaitForFirst({abort, {descriptor}}, silence);
    if (result == WaitResult::First) {
        ThrowTracedLiterally("CSshConnection, aborted", EngineStatus::Aborted);
    }
    if (result == WaitResult::TimedOut) {
        ThrowTracedLiterally("CSshConnection, timed out", EngineStatus::TimedOut);
    }
}

void CSshConnection::Fail(int otherwise)
{
    ThrowTraced("CSshConnection throws: ", IsPeerGone() ? EngineStatus::ConnectionReset : otherwise);
}

bool CSshConnection::IsPeerGone() const
{
    // Asked of the system, not read: bytes that came before a reset may be there still.
    pollfd polled{.fd = socket.GetDescriptor(), .events = POLLRDHUP, .revents = 0};
    return ::poll(&polled, 1, 0) != 0;
}

QString CSshConnection::GetFailure() const
{
    return Widen(ssh_get_error(session.get())).simplified();
}

void CSshConnection::Close()
{
    ssh_disconnect(session.get());
}
