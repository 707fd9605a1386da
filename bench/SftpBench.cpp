#include <algorithm>
#include <cstdio>
#include <vector>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include "ftpengine/session/SftpSession.h"
#include "support/SshServer.h"

// Sends a file of 300 MB, and 500 files of 4 KiB, to a server of OpenSSH on the loopback interface: by the
// program's session and by OpenSSH's own sftp, each from the connecting to the goodbye, taking turns. Prints
// the middle of five times in seconds, and the ratio to sftp.

namespace {

constexpr int turns = 5;

struct Job {
    const char* name;
    QString folder; // local
};

void WriteFile(const QString& path, qint64 bytes)
{
    QFile file(path);
    const QByteArray block(static_cast<qsizetype>(std::min<qint64>(bytes, 1 << 20)), 'x');
    bool isWritten = file.open(QIODevice::WriteOnly);
    for (qint64 rest = bytes; rest > 0 && isWritten; rest -= block.size()) {
        isWritten = file.write(block) == block.size();
    }
    if (!isWritten) {
        std::fprintf(stderr, "%s can't be written\n", qPrintable(path));
        std::exit(1);
    }
}

double SendBySession(const SessionSetting& setting, const Job& job)
{
    QElapsedTimer timer;
    timer.start();
    SessionLog log;
    const auto session = OpenSftpSession(setting, log);
    for (const QString& name : QDir(job.folder).entryList(QDir::Files)) {
        QFile file(job.folder + QLatin1Char('/') + name);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            std::exit(1);
        }
        session->Send(file, name, {});
    }
    session->Quit();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

double SendBySftp(const SessionSetting& setting, const QString& knownHosts, const Job& job)
{
    QElapsedTimer timer;
    timer.start();
    QProcess sftp;
    sftp.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const FTPDestinationConnection& destination = setting.destination;
    sftp.start(QStringLiteral("sftp"),
               {QStringLiteral("-q"), QStringLiteral("-i"), destination.identityFile, QStringLiteral("-o"),
                QStringLiteral("UserKnownHostsFile=") + knownHosts, QStringLiteral("-P"),
                QString::number(destination.port), QStringLiteral("-b"), QStringLiteral("-"),
                destination.userName + QStringLiteral("@127.0.0.1")});
    sftp.write("put " + job.folder.toUtf8() + "/*\n");
    sftp.closeWriteChannel();
    if (!sftp.waitForFinished(-1) || sftp.exitCode() != 0) {
        std::fprintf(stderr, "sftp failed\n");
        std::exit(1);
    }
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

double MiddleOf(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    const CSshServer server;
    if (!server.GetProblem().isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(server.GetProblem()));
        return 1;
    }
    const CScratchFolder scratch;
    SessionSetting setting;
    setting.destination = server.GetDestination();
    setting.abortEvent = std::make_shared<CEvent>();
    setting.trustFolder = scratch.Path(QStringLiteral("trust"));
    setting.destination.identityFile =
        server.MakeKey(QStringLiteral("key"), {QStringLiteral("-t"), QStringLiteral("ed25519")}, {});
    server.Authorise(setting.destination.identityFile);
    const QString knownHosts = scratch.Write(QStringLiteral("trust/known_hosts"), server.GetKnownHostsLine());
    const Job jobs[] = {{"300 MB", scratch.Path(QStringLiteral("large"))},
                        {"500 files", scratch.Path(QStringLiteral("small"))}};
    QDir().mkpath(jobs[0].folder);
    QDir().mkpath(jobs[1].folder);
    WriteFile(jobs[0].folder + QStringLiteral("/file"), 300'000'000);
    for (int i = 0; i < 500; ++i) {
        WriteFile(jobs[1].folder + QStringLiteral("/%1").arg(i), 4096);
    }
    for (const Job& job : jobs) {
        std::vector<double> own;
        std::vector<double> others;
        for (int turn = 0; turn < turns; ++turn) {
            own.push_back(SendBySession(setting, job));
            others.push_back(SendBySftp(setting, knownHosts, job));
        }
        std::printf("%-10s session %.3f s, sftp %.3f s, ratio %.2f\n", job.name, MiddleOf(own),
                    MiddleOf(others), MiddleOf(own) / MiddleOf(others));
    }
    return 0;
}
