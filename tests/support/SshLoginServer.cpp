#include "support/SshLoginServer.h"

#include <fcntl.h>
#include <libssh/callbacks.h>
#include <libssh/libssh.h>
#include <libssh/server.h>

#include <gtest/gtest.h>

// One client. The library calls its functions on the server's thread.
struct CSshLoginServer::Visit {
    CSshLoginServer& server;
    CMemorySftpServer files{};
    ssh_channel channel = nullptr;
    ssh_channel_callbacks_struct channelCalls{};
    std::size_t round = 0;
    bool hasPassword = false; // it has been given
    bool hasAnswers = false;
    bool isRefused = false;

    static Visit& Of(void* user) { return *static_cast<Visit*>(user); }

    void Note(const std::string& secret)
    {
        const std::lock_guard guard(server.lock);
        server.secretsSeen.push_back(secret);
    }

    int Conclude(bool isRight, bool& given)
    {
        given = given || isRight;
        if (!isRight) {
            isRefused = true;
            return SSH_AUTH_DENIED;
        }
        return server.rules.wantsBoth && !(hasPassword && hasAnswers) ? SSH_AUTH_PARTIAL : SSH_AUTH_SUCCESS;
    }

    static int TakeNothing(ssh_session, const char*, void* user)
    {
        return Of(user).server.rules.takesNothing ? SSH_AUTH_SUCCESS : SSH_AUTH_DENIED;
    }

    static int TakePassword(ssh_session session, const char* name, const char* password, void* user)
    {
        Visit& visit = Of(user);
        visit.Note(std::string("password:") + password);
        const Rules& rules = visit.server.rules;
        const bool isRight = !rules.password.empty() && rules.user == name && rules.password == password;
        const int result = visit.Conclude(isRight, visit.hasPassword);
        if (result == SSH_AUTH_PARTIAL) {
            ssh_set_auth_methods(session, SSH_AUTH_METHOD_INTERACTIVE);
        }
        return result;
    }

    // The library has no callback of its own for questions.
    static int TakeMessage(ssh_session session, ssh_message message, void* user)
    {
        Visit& visit = Of(user);
        const bool isQuestions = ssh_message_type(message) == SSH_REQUEST_AUTH &&
                                 ssh_message_subtype(message) == SSH_AUTH_METHOD_INTERACTIVE;
        if (!isQuestions || visit.server.rules.questions.empty()) {
            return 1; // the library refuses it
        }
        if (ssh_message_auth_kbdint_is_response(message) == 0) {
            visit.round = 0;
        } else if (!visit.AreAnswersRight(session)) {
            visit.isRefused = true;
            return 1;
        } else if (++visit.round == visit.server.rules.questions.size()) {
            const int result = visit.Conclude(true, visit.hasAnswers);
            ssh_message_auth_reply_success(message, result == SSH_AUTH_PARTIAL ? 1 : 0);
            return 0;
        }
        visit.Ask(message);
        return 0;
    }

    void Ask(ssh_message message) const
    {
        std::vector<const char*> texts;
        std::vector<char> echoes;
        for (const Question& question : server.rules.questions[round]) {
            texts.push_back(question.text.c_str());
            echoes.push_back(question.isShown ? 1 : 0);
        }
        ssh_message_auth_interactive_request(message, "", "", static_cast<unsigned>(texts.size()),
                                             texts.data(), echoes.data());
    }

    bool AreAnswersRight(ssh_session session)
    {
        const std::vector<Question>& asked = server.rules.questions[round];
        bool areRight = ssh_userauth_kbdint_getnanswers(session) == static_cast<int>(asked.size());
        for (std::size_t i = 0; areRight && i < asked.size(); ++i) {
            const char* const answer = ssh_userauth_kbdint_getanswer(session, static_cast<unsigned>(i));
            Note(std::string("answer:") + answer);
            areRight = asked[i].answer == answer;
        }
        return areRight;
    }

    static ssh_channel OpenChannel(ssh_session session, void* user)
    {
        Visit& visit = Of(user);
        visit.channel = ssh_channel_new(session);
        visit.channelCalls.userdata = user;
        visit.channelCalls.channel_subsystem_request_function = StartSubsystem;
        visit.channelCalls.channel_data_function = TakeData;
        ssh_callbacks_init(&visit.channelCalls);
        ssh_set_channel_callbacks(visit.channel, &visit.channelCalls);
        return visit.channel;
    }

    static int StartSubsystem(ssh_session, ssh_channel, const char* name, void* user)
    {
        return Of(user).server.rules.hasSftp && std::string(name) == "sftp" ? SSH_OK : SSH_ERROR;
    }

    static int TakeData(ssh_session, ssh_channel, void* bytes, uint32_t size, int, void* user)
    {
        Of(user).files.Take({static_cast<const char*>(bytes), size});
        return static_cast<int>(size);
    }
};

CSshLoginServer::CSshLoginServer(Rules rulesToKeep) : rules(std::move(rulesToKeep))
{
    ssh_key key = nullptr;
    EXPECT_EQ(ssh_pki_generate(SSH_KEYTYPE_ED25519, 0, &key), SSH_OK);
    char* text = nullptr;
    EXPECT_EQ(ssh_pki_export_privkey_base64(key, nullptr, nullptr, nullptr, &text), SSH_OK);
    keyFile = text;
    ssh_string_free_char(text);
    EXPECT_EQ(ssh_pki_export_pubkey_base64(key, &text), SSH_OK);
    hostKey = QByteArray::fromBase64(text);
    ssh_string_free_char(text);
    ssh_key_free(key);
    thread = std::thread([this] {
        for (CSocket client = listener.Accept(stop); client.IsOpen(); client = listener.Accept(stop)) {
            Serve(std::move(client));
        }
    });
}

CSshLoginServer::~CSshLoginServer()
{
    stop.Set();
    thread.join();
}

FTPDestinationConnection CSshLoginServer::GetDestination(const QString& password) const
{
    FTPDestinationConnection destination;
    destination.userName = QStringLiteral("anna");
    destination.password = password;
    destination.server = QStringLiteral("127.0.0.1");
    destination.port = listener.GetPort();
    destination.protocol = ServerProtocol::Sftp;
    return destination;
}

std::vector<std::string> CSshLoginServer::GetSecretsSeen()
{
    const std::lock_guard guard(lock);
    return secretsSeen;
}

void CSshLoginServer::Serve(CSocket client)
{
    const ssh_bind binding = ssh_bind_new();
    const bool readsFiles = false;
    ssh_bind_options_set(binding, SSH_BIND_OPTIONS_PROCESS_CONFIG, &readsFiles);
    ssh_key key = nullptr;
    EXPECT_EQ(ssh_pki_import_privkey_base64(keyFile.c_str(), nullptr, nullptr, nullptr, &key), SSH_OK);
    EXPECT_EQ(ssh_bind_options_set(binding, SSH_BIND_OPTIONS_IMPORT_KEY, key), SSH_OK); // which owns it now
    const ssh_session session = ssh_new();
    Visit visit{.server = *this};
    ssh_server_callbacks_struct calls{};
    calls.userdata = &visit;
    calls.auth_none_function = Visit::TakeNothing;
    calls.auth_password_function = Visit::TakePassword;
    calls.channel_open_request_session_function = Visit::OpenChannel;
    ssh_callbacks_init(&calls);
    // The library closes what it is given.
    const int descriptor = ::fcntl(client.GetDescriptor(), F_DUPFD_CLOEXEC, 0);
    if (ssh_bind_accept_fd(binding, session, descriptor) == SSH_OK) {
        ssh_set_server_callbacks(session, &calls);
        ssh_set_message_callback(session, Visit::TakeMessage, &visit);
        ssh_set_auth_methods(
            session, (rules.password.empty() ? 0 : SSH_AUTH_METHOD_PASSWORD) |
                         (rules.questions.empty() || rules.wantsBoth ? 0 : SSH_AUTH_METHOD_INTERACTIVE));
        const ssh_event event = ssh_event_new();
        if (ssh_handle_key_exchange(session) == SSH_OK) {
            ssh_event_add_session(event, session);
            while (!stop.IsSet() && ssh_event_dopoll(event, 20) != SSH_ERROR &&
                   (ssh_get_status(session) & (SSH_CLOSED | SSH_CLOSED_ERROR)) == 0 &&
                   !(visit.isRefused && rules.disconnectsRefused)) {
                if (visit.channel != nullptr && !visit.files.outgoing.empty()) {
                    ssh_channel_write(visit.channel, visit.files.outgoing.data(),
                                      static_cast<uint32_t>(visit.files.outgoing.size()));
                    visit.files.outgoing.clear();
                }
            }
            ssh_event_remove_session(event, session);
        }
        ssh_event_free(event);
    }
    ssh_disconnect(session);
    ssh_free(session);
    ssh_bind_free(binding);
}
