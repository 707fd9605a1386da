#pragma once

#include <gmock/gmock.h>

#include <QBuffer>

#include "FTPEngineFixture.h"
#include "common/Text.h"
#include "ftpengine/session/OpenRemoteSession.h"
#include "support/ScratchFolder.h"

// Sessions with the scripted server.
class CFTPSessionFixture : public testing::Test {
protected:
    using Commands = std::vector<std::string>;

    const CResourceGuard guard; // the first, so that it counts last
    const CScratchFolder scratch;
    CScriptedServer server;
    SessionLog log;
    SessionSetting setting{.destination = {},
                           .timeouts = PatientTimeouts(),
                           .abortEvent = std::make_shared<CEvent>(),
                           .trustFolder = scratch.Path(QStringLiteral("trust"))};
    std::unique_ptr<CRemoteSession> session;

    // "open", "refused 530" or "thrown 12045".
    std::string Open(ServerProtocol protocol = ServerProtocol::Ftp, const QString& directory = {})
    {
        session.reset(); // the server has one client at a time
        const QByteArray fingerprint = setting.destination.fingerprint;
        setting.destination = server.GetDestination(directory);
        setting.destination.protocol = protocol;
        setting.destination.fingerprint = fingerprint;
        return Outcome([this] { session = OpenRemoteSession(setting, log); });
    }

    template <class Function>
    static std::string Outcome(const Function& function)
    {
        try {
            function();
            return "done";
        } catch (const FTPReply& refusal) {
            return "refused " + std::to_string(refusal.code);
        } catch (int error) {
            return "thrown " + std::to_string(error);
        }
    }

    std::string Send(const QByteArray& bytes, const QString& path = QStringLiteral("a.jpg"))
    {
        return Outcome([&] {
            QBuffer source;
            source.setData(bytes);
            source.open(QIODevice::ReadOnly);
            session->Send(source, path, [this](int64_t count) { progress += count; });
        });
    }

    // The last ones.
    Commands CommandsFrom(std::size_t first)
    {
        const Commands all = server.GetCommands();
        return {all.begin() + static_cast<std::ptrdiff_t>(std::min(first, all.size())), all.end()};
    }

    int64_t progress = 0;
};
