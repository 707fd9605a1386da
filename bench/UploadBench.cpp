#include <condition_variable>
#include <cstdio>
#include <mutex>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include "ftpengine/FTPEngine.h"
#include "ftpengine/session/OpenRemoteSession.h"
#include "support/FTPServer.h"

// Sends a file of 300 MB, and 500 files of 4 KiB, to a vsftpd of its own on the loopback interface, in clear
// and with TLS: by the program's FTP client, over one session and as a task, by lftp over one connection, and
// the large file by curl. Prints seconds from the begin of the connection to its end, and the ratios.

namespace {

class CFinishTarget final : public CFTPTarget {
public:
    void Post(FTPMessage message) override
    {
        if (const auto* const finished = std::get_if<FTP_UPLOAD_FINISHED>(&message)) {
            const std::lock_guard guard(lock);
            success = finished->result.IsSuccess();
            done = true;
            arrived.notify_one();
        }
    }

    bool Wait()
    {
        std::unique_lock guard(lock);
        arrived.wait(guard, [this] { return done; });
        done = false;
        return success;
    }

private:
    std::mutex lock;
    std::condition_variable arrived;
    bool done = false;
    bool success = false;
};

FTPUploadMap ListFiles(const QString& folder)
{
    FTPUploadMap items;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files)) {
        items[file.filePath()] = {.localPath = file.filePath(),
                                  .name = file.fileName(),
                                  .directory = {},
                                  .size = static_cast<uint32_t>(file.size())};
    }
    return items;
}

void WriteFile(const QString& path, qint64 bytes)
{
    QFile file(path);
    const QByteArray block(static_cast<qsizetype>(std::min<qint64>(bytes, 1 << 20)), 'x');
    bool written = file.open(QIODevice::WriteOnly);
    for (qint64 rest = bytes; rest > 0 && written; rest -= block.size()) {
        written = file.write(block) == block.size();
    }
    if (!written) {
        std::fprintf(stderr, "%s can't be written\n", qPrintable(path));
        std::exit(1);
    }
}

FTPDestinationConnection DestinationOf(const CFTPServer& server)
{
    FTPDestinationConnection destination;
    destination.userName = server.GetUser();
    destination.password = server.GetPassword();
    destination.server = QStringLiteral("127.0.0.1");
    destination.port = server.GetPort();
    destination.fingerprint = server.GetFingerprint();
    destination.protocol = server.GetFingerprint().isEmpty() ? ServerProtocol::Ftp : ServerProtocol::FtpTls;
    return destination;
}

// Seconds, or -1.
double TimeTask(const CFTPServer& server, const FTPUploadMap& items)
{
    const auto target = std::make_shared<CFinishTarget>();
    CFTPEngine engine;
    QElapsedTimer timer;
    timer.start();
    engine.Upload(DestinationOf(server), QString(), items, target);
    return target->Wait() ? static_cast<double>(timer.elapsed()) / 1000.0 : -1;
}

double TimeSession(const CFTPServer& server, const FTPUploadMap& items)
{
    SessionLog log;
    QElapsedTimer timer;
    timer.start();
    try {
        const auto session = OpenRemoteSession({.destination = DestinationOf(server),
                                                .timeouts = {},
                                                .abortEvent = std::make_shared<CEvent>(),
                                                .trustFolder = {}},
                                               log);
        for (const auto& [path, item] : items) {
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
                return -1;
            }
            session->Send(file, QStringLiteral("session-") + item.name, {});
        }
        session->Quit();
    } catch (int) {
        return -1;
    } catch (const FTPReply&) {
        return -1;
    }
    return static_cast<double>(timer.elapsed()) / 1000.0;
}

double TimeProgram(const QString& program, const QStringList& arguments)
{
    QProcess process;
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments);
    const bool good = process.waitForFinished(-1) && process.exitCode() == 0;
    return good ? static_cast<double>(timer.elapsed()) / 1000.0 : -1;
}

double TimeLftp(const CFTPServer& server, const QString& folder, const QString& target)
{
    const QString security = server.GetFingerprint().isEmpty()
                                 ? QStringLiteral("set ftp:ssl-allow no")
                                 : QStringLiteral("set ftp:ssl-force yes; set ftp:ssl-protect-data yes; "
                                                  "set ssl:verify-certificate no");
    return TimeProgram(QStringLiteral("lftp"),
                       {QStringLiteral("-e"),
                        QStringLiteral("%1; set net:connection-limit 1; mirror -R -c --no-perms %2 %3; quit")
                            .arg(security, folder, target),
                        QStringLiteral("ftp://127.0.0.1:%1").arg(server.GetPort())});
}

double TimeCurl(const CFTPServer& server, const QString& file)
{
    QStringList arguments{QStringLiteral("-sS"), QStringLiteral("-T"), file,
                          QStringLiteral("ftp://127.0.0.1:%1/curl.bin").arg(server.GetPort())};
    if (!server.GetFingerprint().isEmpty()) {
        arguments << QStringLiteral("--ssl-reqd") << QStringLiteral("-k");
    }
    return TimeProgram(QStringLiteral("curl"), arguments);
}

void Print(const char* what, double own, const char* other, double others)
{
    if (others > 0) {
        std::printf("%-34s %6.2f s   %-5s %6.2f s   ratio %.2f\n", what, own, other, others, own / others);
    } else {
        std::printf("%-34s %6.2f s   %-5s failed\n", what, own, other);
    }
}

bool Measure(FTPServerSecurity security, const QString& large, const QString& small)
{
    const CFTPServer server(FTPServerKind::Vsftpd, security);
    if (!server.GetProblem().isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(server.GetProblem()));
        return false;
    }
    std::printf("%s\n", security == FTPServerSecurity::Clear ? "in clear" : "with TLS");
    const double curl = TimeCurl(server, large + QStringLiteral("large.bin"));
    Print("1 file of 300 MB, session", TimeSession(server, ListFiles(large)), "curl", curl);
    Print("1 file of 300 MB, task", TimeTask(server, ListFiles(large)), "curl", curl);
    Print("1 file of 300 MB, session", TimeSession(server, ListFiles(large)), "lftp",
          TimeLftp(server, large, QStringLiteral("lftp-large")));
    const double lftp = TimeLftp(server, small, QStringLiteral("lftp-small"));
    Print("500 files of 4 KiB, session", TimeSession(server, ListFiles(small)), "lftp", lftp);
    Print("500 files of 4 KiB, task", TimeTask(server, ListFiles(small)), "lftp", lftp);
    return true;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    const CScratchFolder scratch;
    const QString large = scratch.Path(QStringLiteral("large/"));
    const QString small = scratch.Path(QStringLiteral("small/"));
    QDir().mkpath(large);
    QDir().mkpath(small);
    WriteFile(large + QStringLiteral("large.bin"), 300'000'000);
    for (int i = 0; i < 500; ++i) {
        WriteFile(small + QStringLiteral("%1.bin").arg(i, 3, 10, QLatin1Char('0')), 4096);
    }
    return Measure(FTPServerSecurity::Clear, large, small) &&
                   Measure(FTPServerSecurity::TlsOnly, large, small)
               ? 0
               : 1;
}
