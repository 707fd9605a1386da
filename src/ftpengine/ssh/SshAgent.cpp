#include "ftpengine/ssh/SshAgent.h"

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <libssh/libssh.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>

#include <QtGlobal>

#include "ftpengine/messages/EngineStatus.h"

namespace {

// Negative if there is no agent at that path.
int ConnectToAgent(const QByteArray& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || static_cast<std::size_t>(path.size()) >= sizeof address.sun_path) {
        return -1;
    }
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    CDescriptor connecting(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    // One whose queue is full isn't waited for.
    if (connecting.Get() < 0 ||
        ::connect(connecting.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        return -1;
    }
    return ::fcntl(connecting.Get(), F_DUPFD_CLOEXEC, 0);
}

sigset_t PipeSignal()
{
    sigset_t signal;
    ::sigemptyset(&signal);
    ::sigaddset(&signal, SIGPIPE);
    return signal;
}

} // namespace

CNoPipeSignal::CNoPipeSignal()
{
    sigset_t before;
    const sigset_t signal = PipeSignal();
    ::pthread_sigmask(SIG_BLOCK, &signal, &before);
    wasBlocked = ::sigismember(&before, SIGPIPE) == 1;
}

CNoPipeSignal::~CNoPipeSignal()
{
    if (wasBlocked) {
        return;
    }
    const sigset_t signal = PipeSignal();
    // What has come meanwhile would come when it is let in again.
    const timespec noTime{};
    while (::sigtimedwait(&signal, nullptr, &noTime) == SIGPIPE) {
    }
    ::pthread_sigmask(SIG_UNBLOCK, &signal, nullptr);
}

CSshAgent::~CSshAgent()
{
    finished.Set();
    if (guard.joinable()) {
        guard.join();
    }
}

bool CSshAgent::Connect(ssh_session_struct* session, const std::shared_ptr<CEvent>& abort,
                        std::chrono::milliseconds patience)
{
    descriptor.Reset(ConnectToAgent(qgetenv("SSH_AUTH_SOCK")));
    const int lent = descriptor.Get() < 0 ? -1 : ::fcntl(descriptor.Get(), F_DUPFD_CLOEXEC, 0);
    if (lent < 0 || ssh_set_agent_socket(session, lent) != SSH_OK) {
        CDescriptor unused(lent);
        return false;
    }
    try {
        guard = std::thread([this, abort, patience] {
            if (WaitForFirst({UntilSet(finished), UntilSet(*abort)}, patience) != WaitResult::First) {
                ::shutdown(descriptor.Get(), SHUT_RDWR);
            }
        });
    } catch (const std::system_error&) {
        throw EngineStatus::NoBufferSpace;
    }
    return true;
}
