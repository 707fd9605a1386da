#include "cli/ServerLogin.h"

#include <csignal>
#include <cstring>
#include <string>
#include <sys/select.h>
#include <termios.h>
#include <unistd.h>

#include "cli/Answers.h"
#include "cli/CommandArguments.h"
#include "cli/ServerUrl.h"
#include "common/Text.h"
#include "ftpengine/secrets/SecretText.h"
#include "resources/StringTable.h"

namespace {

const QString IdentityOption = QStringLiteral("identity");
const QString FingerprintOption = QStringLiteral("fingerprint");

void LeaveWait(int) {}

// What a person types. Wiped at the end.
class CTypedLine {
public:
    // Longer lines would leave pieces behind when they move.
    CTypedLine() { bytes.reserve(usualLength); }
    ~CTypedLine() { ::explicit_bzero(bytes.data(), bytes.size()); }
    CTypedLine(const CTypedLine&) = delete;
    CTypedLine& operator=(const CTypedLine&) = delete;

    std::string bytes;

private:
    static constexpr std::size_t usualLength = 1024;
};

// While it lives, the terminal shows nothing of what is typed, and an interrupt ends a wait for input instead
// of the program: the terminal has to be put right first.
class CSilentTerminal {
public:
    CSilentTerminal()
    {
        // Outside the wait both are held back, so that none is lost between two of them.
        sigset_t held;
        sigemptyset(&held);
        sigaddset(&held, SIGINT);
        sigaddset(&held, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &held, &formerMask);
        struct sigaction action {};
        action.sa_handler = LeaveWait;
        sigaction(SIGINT, &action, &formerInterrupt);
        sigaction(SIGTERM, &action, &formerTermination);
        tcgetattr(STDIN_FILENO, &former);
        termios silent = former;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~CSilentTerminal()
    {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &former);
        sigaction(SIGINT, &formerInterrupt, nullptr);
        sigaction(SIGTERM, &formerTermination, nullptr);
        pthread_sigmask(SIG_SETMASK, &formerMask, nullptr);
    }
    CSilentTerminal(const CSilentTerminal&) = delete;
    CSilentTerminal& operator=(const CSilentTerminal&) = delete;

    // Up to the line break or the end of input. Nothing if it was interrupted.
    std::optional<QString> ReadLine() const
    {
        CTypedLine line;
        for (;;) {
            if (!WaitForInput()) {
                return std::nullopt;
            }
            char character = 0;
            if (::read(STDIN_FILENO, &character, 1) <= 0 || character == '\n') {
                return Widen(line.bytes);
            }
            line.bytes += character;
        }
    }

private:
    // False if it was interrupted.
    bool WaitForInput() const
    {
        fd_set inputs;
        FD_ZERO(&inputs);
        FD_SET(STDIN_FILENO, &inputs);
        return ::pselect(STDIN_FILENO + 1, &inputs, nullptr, nullptr, nullptr, &formerMask) >= 0;
    }

    termios former{};
    sigset_t formerMask{};
    struct sigaction formerInterrupt {};
    struct sigaction formerTermination {};
};

std::optional<QString> Prompt(const QString& question)
{
    const CSilentTerminal terminal;
    // After the silence: nobody types before the question is there.
    PrintError(question);
    const auto answer = terminal.ReadLine();
    PrintError(QStringLiteral("\n"));
    return answer;
}

} // namespace

std::optional<QString> FindPassword(const ServerUrl& url)
{
    if (url.password) {
        return url.password;
    }
    const char* const variable = "VISTORAMA_FTP_PASSWORD";
    if (qEnvironmentVariableIsSet(variable)) {
        const QString password = qEnvironmentVariable(variable);
        if (password.contains(QLatin1Char('\r')) || password.contains(QLatin1Char('\n'))) {
            throw CWrongUse(Text(StringId::PasswordHoldsLineBreak, variable));
        }
        return password;
    }
    const bool namesUser = url.userName != QStringLiteral("anonymous");
    if (!namesUser || isatty(STDIN_FILENO) == 0) {
        return QString();
    }
    ServerUrl login = url;
    login.directory.clear();
    const bool mayBePassphrase = url.protocol == ServerProtocol::Sftp;
    return Prompt(Text(mayBePassphrase ? StringId::SecretQuestion : StringId::PasswordQuestion,
                       FormatServerUrl(login)));
}

std::optional<FTPDestinationConnection> FindConnection(const QString& address)
{
    ServerUrl url = ParseServerUrl(address);
    url.password = FindPassword(url);
    if (!url.password) {
        return std::nullopt;
    }
    const CSecretText password = *url.password;
    WipeText(*url.password);
    return FTPDestinationConnection{.displayName = url.server,
                                    .userName = url.userName,
                                    .password = password,
                                    .server = url.server,
                                    .directory = url.directory,
                                    .port = url.port,
                                    .protocol = url.protocol};
}

const QStringList& GetServerOptions()
{
    static const QStringList options{IdentityOption, FingerprintOption};
    return options;
}

void ApplyServerOptions(const CommandArguments& parsed, FTPDestinationConnection& connection)
{
    if (parsed.Has(IdentityOption)) {
        if (connection.protocol != ServerProtocol::Sftp) {
            throw CWrongUse(Text(StringId::IdentityNeedsSftp));
        }
        connection.identityFile = parsed.Get(IdentityOption);
    }
    if (parsed.Has(FingerprintOption)) {
        if (connection.protocol == ServerProtocol::Ftp) {
            throw CWrongUse(Text(StringId::FingerprintNeedsProtection));
        }
        const auto fingerprint = ParseFingerprint(parsed.Get(FingerprintOption));
        if (!fingerprint) {
            throw CWrongUse(Text(StringId::FingerprintWrong));
        }
        connection.fingerprint = *fingerprint;
    }
}
