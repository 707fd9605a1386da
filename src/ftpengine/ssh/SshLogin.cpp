#include "ftpengine/ssh/SshLogin.h"

#include <functional>
#include <libssh/libssh.h>
#include <optional>
#include <utility>

#include <QDir>
#include <QStringList>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/secrets/SecretText.h"
#include "ftpengine/sftp/SftpRefusal.h"
#include "ftpengine/ssh/SshAgent.h"
#include "ftpengine/ssh/SshKeyFile.h"
#include "resources/StringTable.h"

namespace {

enum class Outcome {
    Done,
    Partial, // the server has taken this, and wants another way besides
    Refused, // or not tried
};

struct Method {
    int flag;
    const char* name; // RFC 4252, 5; RFC 4256
};

constexpr Method methods[] = {
    {SSH_AUTH_METHOD_PUBLICKEY, "publickey"},
    {SSH_AUTH_METHOD_PASSWORD, "password"},
    {SSH_AUTH_METHOD_INTERACTIVE, "keyboard-interactive"},
    {SSH_AUTH_METHOD_HOSTBASED, "hostbased"},
    {SSH_AUTH_METHOD_GSSAPI_MIC, "gssapi-with-mic"},
};

// One login, on the session's thread.
class CSshLogin {
public:
    CSshLogin(CSshConnection& connection, const SessionSetting& setting, SessionLog& log);

    void Run();

private:
    Outcome TryNothing();
    Outcome TryWays();
    Outcome TryAgent();
    Outcome TryKeyFiles();
    Outcome TryKeyFile(const QString& path);
    Outcome TryPassword();
    Outcome TryQuestions();
    std::optional<QString> AnswerQuestion();

    int Repeat(const std::function<int()>& step);
    Outcome Conclude(const QString& way, int result);
    bool Takes(int method) const;
    QString ListTaken() const;
    [[noreturn]] void Fail();
    [[noreturn]] void Refuse();

    CSshConnection& connection;
    const SessionSetting& setting;
    SessionLog& log;
    const CSecretText password;
    CSshAgent agent;
    QStringList tried; // for people
    bool usedAgent = false;
    bool usedKeyFiles = false;
    bool usedPassword = false;
};

CSshLogin::CSshLogin(CSshConnection& connection, const SessionSetting& setting, SessionLog& log)
    : connection(connection), setting(setting), log(log), password(setting.destination.password)
{}

void CSshLogin::Run()
{
    Outcome outcome = TryNothing();
    // After a partial success the server lists what it wants besides; no way is gone twice.
    do {
        if (outcome != Outcome::Done) {
            outcome = TryWays();
        }
    } while (outcome == Outcome::Partial);
    if (outcome == Outcome::Refused) {
        Refuse();
    }
    if (char* const banner = ssh_get_issue_banner(connection.Get())) {
        log.transcript.push_back(Widen(banner));
        ssh_string_free_char(banner);
    }
}

// Also makes the server tell what it takes.
Outcome CSshLogin::TryNothing()
{
    const int result = Repeat([this] { return ssh_userauth_none(connection.Get(), nullptr); });
    return result == SSH_AUTH_SUCCESS ? Outcome::Done : Outcome::Refused;
}

// Servers count what they have refused, and hang up after a few times: with a password, an agent with many
// keys comes last.
Outcome CSshLogin::TryWays()
{
    using Way = Outcome (CSshLogin::*)();
    const Way withPassword[] = {&CSshLogin::TryKeyFiles, &CSshLogin::TryPassword, &CSshLogin::TryQuestions,
                                &CSshLogin::TryAgent};
    const Way without[] = {&CSshLogin::TryAgent, &CSshLogin::TryKeyFiles, &CSshLogin::TryPassword,
                           &CSshLogin::TryQuestions};
    for (const Way way : password.IsEmpty() ? without : withPassword) {
        const Outcome outcome = (this->*way)();
        if (outcome != Outcome::Refused) {
            return outcome;
        }
    }
    return Outcome::Refused;
}

Outcome CSshLogin::TryAgent()
{
    const bool isWanted = setting.destination.identityFile.isEmpty() && Takes(SSH_AUTH_METHOD_PUBLICKEY);
    if (!isWanted || std::exchange(usedAgent, true) ||
        !agent.Connect(connection.Get(), setting.abortEvent, setting.timeouts.reply)) {
        return Outcome::Refused;
    }
    int result =
        connection.Repeat(SSH_AUTH_AGAIN, [this] { return ssh_userauth_agent(connection.Get(), nullptr); });
    // A failure of the agent leaves the other ways.
    if (setting.abortEvent->IsSet() || (result == SSH_AUTH_ERROR && connection.IsPeerGone())) {
        Fail();
    }
    if (result == SSH_AUTH_ERROR) {
        result = SSH_AUTH_DENIED;
    }
    return Conclude(Text(StringId::LoginByAgent), result);
}

Outcome CSshLogin::TryKeyFiles()
{
    if (!Takes(SSH_AUTH_METHOD_PUBLICKEY) || std::exchange(usedKeyFiles, true)) {
        return Outcome::Refused;
    }
    const QString& named = setting.destination.identityFile;
    for (const QString& file : named.isEmpty() ? FindOwnSshKeyFiles() : QStringList{named}) {
        const Outcome outcome = TryKeyFile(file);
        if (outcome != Outcome::Refused) {
            return outcome;
        }
    }
    return Outcome::Refused;
}

Outcome CSshLogin::TryKeyFile(const QString& path)
{
    const bool isBelowHome = path.startsWith(QLatin1String("~/"));
    const SshKeyFile file = ReadSshKeyFile(isBelowHome ? QDir::homePath() + path.mid(1) : path, password);
    const bool isNamed = !setting.destination.identityFile.isEmpty();
    if (file.hasPassphrase && (isNamed || file.state == SshKeyFile::State::Read)) {
        usedPassword = true; // a passphrase, which is nothing for the server's eyes
    }
    switch (file.state) {
    case SshKeyFile::State::Read:
        break;
    case SshKeyFile::State::Absent:
        return Conclude(Text(StringId::LoginKeyFileAbsent, path), SSH_AUTH_DENIED);
    case SshKeyFile::State::Locked:
        return Conclude(Text(StringId::LoginKeyFileLocked, path), SSH_AUTH_DENIED);
    case SshKeyFile::State::Unfit:
        return Conclude(Text(StringId::LoginKeyFileUnfit, path), SSH_AUTH_DENIED);
    }
    return Conclude(Text(StringId::LoginByKeyFile, path), Repeat([&] {
                        return ssh_userauth_publickey(connection.Get(), nullptr, file.key.get());
                    }));
}

Outcome CSshLogin::TryPassword()
{
    if (!Takes(SSH_AUTH_METHOD_PASSWORD) || password.IsEmpty() || std::exchange(usedPassword, true)) {
        return Outcome::Refused;
    }
    return Conclude(Text(StringId::LoginByPassword), Repeat([this] {
                        return ssh_userauth_password(connection.Get(), nullptr, password.GetBytes());
                    }));
}

// RFC 4256. A server that has refused the password would ask for it again under another name.
Outcome CSshLogin::TryQuestions()
{
    const bool isRefused = usedPassword && Takes(SSH_AUTH_METHOD_PASSWORD);
    if (!Takes(SSH_AUTH_METHOD_INTERACTIVE) || isRefused) {
        return Outcome::Refused;
    }
    const auto ask = [this] {
        return Repeat([this] { return ssh_userauth_kbdint(connection.Get(), nullptr, nullptr); });
    };
    constexpr int mostRounds = 8; // servers ask once or twice, or have something to say in between
    int result = ask();
    for (int round = 0; result == SSH_AUTH_INFO && round < mostRounds; ++round) {
        if (const auto unanswered = AnswerQuestion()) {
            return Conclude(Text(StringId::LoginQuestionUnanswered, *unanswered), SSH_AUTH_DENIED);
        }
        result = ask();
    }
    return Conclude(Text(StringId::LoginByQuestions), result);
}

// A single question whose answer isn't to be seen is the one for the password. Returns the first other one.
std::optional<QString> CSshLogin::AnswerQuestion()
{
    const int count = ssh_userauth_kbdint_getnprompts(connection.Get());
    if (count <= 0) {
        return std::nullopt;
    }
    char isShown = 0;
    const char* const question = ssh_userauth_kbdint_getprompt(connection.Get(), 0, &isShown);
    const bool isForPassword = count == 1 && isShown == 0 && !password.IsEmpty();
    if (!isForPassword || std::exchange(usedPassword, true)) {
        return Widen(question == nullptr ? "" : question).simplified();
    }
    if (ssh_userauth_kbdint_setanswer(connection.Get(), 0, password.GetBytes()) < 0) {
        throw EngineStatus::NoBufferSpace;
    }
    return std::nullopt;
}

int CSshLogin::Repeat(const std::function<int()>& step)
{
    const int result = connection.Repeat(SSH_AUTH_AGAIN, step);
    if (result == SSH_AUTH_ERROR) {
        Fail();
    }
    return result;
}

void CSshLogin::Fail()
{
    if (setting.abortEvent->IsSet()) {
        ThrowTracedLiterally("CSshLogin, aborted", EngineStatus::Aborted);
    }
    const QString failure = connection.GetFailure();
    log.transcript.push_back(failure);
    // "Too many authentication failures", for instance: a server's last words are its refusal.
    if (failure.contains(QLatin1String("DISCONNECT"))) {
        tried += failure;
        Refuse();
    }
    connection.Fail(EngineStatus::TlsFailed);
}

Outcome CSshLogin::Conclude(const QString& way, int result)
{
    log.transcript.push_back(way);
    switch (result) {
    case SSH_AUTH_SUCCESS:
        return Outcome::Done;
    case SSH_AUTH_PARTIAL:
        return Outcome::Partial;
    default:
        tried += way;
        return Outcome::Refused;
    }
}

bool CSshLogin::Takes(int method) const
{
    return (ssh_userauth_list(connection.Get(), nullptr) & method) != 0;
}

QString CSshLogin::ListTaken() const
{
    QStringList names;
    for (const Method& method : methods) {
        if (Takes(method.flag)) {
            names += QString::fromLatin1(method.name);
        }
    }
    return names.join(QLatin1String(", "));
}

void CSshLogin::Refuse()
{
    const QString ways = tried.isEmpty() ? Text(StringId::LoginByNothing) : tried.join(QLatin1String("; "));
    throw MakeRefusal(RefusalCode::NotLoggedIn,
                      Text(StringId::ServerRefusesLogin, setting.destination.userName, ways, ListTaken()));
}

} // namespace

void LogIn(CSshConnection& connection, const SessionSetting& setting, SessionLog& log)
{
    CSshLogin(connection, setting, log).Run();
}
