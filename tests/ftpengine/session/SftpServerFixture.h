#pragma once

#include <functional>

#include <QCryptographicHash>
#include <gtest/gtest.h>

#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/session/SftpSession.h"
#include "support/SshServer.h"

// For tests of sessions against OpenSSH's server: one that runs, and a user who has no keys and no agent but
// those of the test.
class CSftpServerFixture : public testing::Test {
protected:
    CSshServer server;
    const CScratchFolder scratch;
    SessionSetting setting;
    SessionLog log;
    const QByteArray formerHome = qgetenv("HOME");
    const QByteArray formerAgent = qgetenv("SSH_AUTH_SOCK");

    // more: of the server's configuration.
    explicit CSftpServerFixture(const QString& more = {}) : server(more)
    {
        qputenv("HOME", scratch.Path(QStringLiteral("home")).toUtf8());
        qunsetenv("SSH_AUTH_SOCK");
        setting.destination = server.GetDestination();
        setting.abortEvent = std::make_shared<CEvent>();
        setting.trustFolder = scratch.Path(QStringLiteral("trust"));
    }
    ~CSftpServerFixture() override
    {
        qputenv("HOME", formerHome);
        if (!formerAgent.isNull()) {
            qputenv("SSH_AUTH_SOCK", formerAgent);
        } else {
            qunsetenv("SSH_AUTH_SOCK");
        }
    }

    void SetUp() override
    {
        if (!server.GetProblem().isEmpty()) {
            FAIL() << qPrintable(server.GetProblem());
        }
    }

    // The usual case: the server is known, and there is a key for it.
    void Prepare()
    {
        scratch.Write(QStringLiteral("trust/known_hosts"), server.GetKnownHostsLine());
        const QString key =
            server.MakeKey(QStringLiteral("key"), {QStringLiteral("-t"), QStringLiteral("ed25519")}, {});
        server.Authorise(key);
        setting.destination.identityFile = key;
    }

    std::unique_ptr<CRemoteSession> Open() { return OpenSftpSession(setting, log); }

    QString Thrown(const std::function<void()>& action)
    {
        try {
            action();
        } catch (int number) {
            return QString::number(number);
        } catch (const FTPReply& reply) {
            return reply.text;
        }
        return {};
    }

    // Of the server's host key.
    QByteArray GetFingerprint() const
    {
        const QByteArray blob = QByteArray::fromBase64(server.GetHostKey().split(' ').value(1));
        return QCryptographicHash::hash(blob, QCryptographicHash::Sha256);
    }

    QString LoginResult()
    {
        return Thrown([this] { Open()->Quit(); });
    }
};
