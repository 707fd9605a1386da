#pragma once

#include <memory>
#include <string>
#include <vector>

#include "FTPEngineFixture.h"
#include "common/Text.h"
#include "ftpengine/commands/FTPCommandSequences.h"
#include "ftpengine/net/Connection.h"
#include "support/TraceRecorder.h"

// Sequences over a stream to the scripted server, without a task.
class CFTPSequenceFixture : public testing::Test {
protected:
    using Commands = std::vector<std::string>;

    const CResourceGuard guard;
    CTraceRecorder traces;
    CScriptedServer server;
    const std::shared_ptr<CEvent> abort = std::make_shared<CEvent>();
    std::vector<QString> transcript;
    std::unique_ptr<CSocketStream> stream;

    void Open(const FTPTimeouts& timeouts = PatientTimeouts())
    {
        server.Start();
        stream = std::make_unique<CSocketStream>(timeouts);
        OpenConnection(server.GetDestination(), abort, *stream);
    }

    // "230 in", "refused 530 no" or "thrown 6" of a sequence that has no greeting before it.
    template <class Sequence, class... Arguments>
    std::string Run(const Arguments&... arguments)
    {
        Sequence sequence(*stream, abort, transcript);
        return Outcome([&] { return sequence.Run(arguments...); });
    }

    template <class Function>
    static std::string Outcome(const Function& function)
    {
        try {
            return Line(function());
        } catch (const FTPReply& reply) {
            return "refused " + Line(reply);
        } catch (int error) {
            return "thrown " + std::to_string(error);
        }
    }

    static std::string Line(const FTPReply& reply)
    {
        return std::to_string(reply.code) + '|' + Narrow(reply.text.trimmed());
    }

    // Opens without a greeting, for one command after the other.
    void OpenQuietly(const FTPTimeouts& timeouts = PatientTimeouts())
    {
        server.On("GREETING", [](CServerSession&, const std::string&) {});
        Open(timeouts);
    }

    std::string Login(const QString& password = QStringLiteral("s3cret"))
    {
        return LoginOver(*stream, password);
    }

    std::string LoginOver(CSocketStream& connection, const QString& password)
    {
        CFTPCommandSequenceWelcome welcome(connection, abort, transcript);
        CFTPCommandSequenceLogin login(connection, abort, transcript);
        return Outcome([&] {
            welcome.Run();
            return login.Run(QStringLiteral("anna"), password);
        });
    }
};
