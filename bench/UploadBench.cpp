#include <condition_variable>
#include <cstdio>
#include <mutex>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include "ftpengine/FTPEngine.h"
#include "support/FTPServer.h"

// Sends a file of 300 MB, and 500 files of 4 KiB, to a vsftpd of its own on the loopback interface: by the
// program's FTP client, by lftp over one connection, and the large file by curl. Prints seconds, and the
// ratio to lftp. The fixed second of silence after the greeting is shown apart.

namespace {

constexpr double greetingSeconds = 1.0;

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

// Seconds, or -1.
double TimeOwnUpload(const CFTPServer& server, const FTPUploadMap& items)
{
    const auto target = std::make_shared<CFinishTarget>();
    CFTPEngine engine;
    const FTPDestinationConnection destination{.displayName = {},
                                               .userName = server.GetUser(),
                                               .password = server.GetPassword(),
                                               .server = QStringLiteral("127.0.0.1"),
                                               .directory = {},
                                               .port = server.GetPort()};
    QElapsedTimer timer;
    timer.start();
    engine.Upload(destination, QString(), items, target);
    return target->Wait() ? static_cast<double>(timer.elapsed()) / 1000.0 : -1;
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
    return TimeProgram(QStringLiteral("lftp"),
                       {QStringLiteral("-e"),
                        QStringLiteral("set ftp:ssl-allow no; set net:connection-limit 1; mirror -R -c "
                                       "--no-perms %1 %2; quit")
                            .arg(folder, target),
                        QStringLiteral("ftp://127.0.0.1:%1").arg(server.GetPort())});
}

void Print(const char* what, double own, double lftp, double curl)
{
    std::printf("%-22s vistorama %6.2f s (%.2f s without the greeting's second)   lftp %6.2f s", what, own,
                own - greetingSeconds, lftp);
    if (curl >= 0) {
        std::printf("   curl %6.2f s", curl);
    }
    std::printf("   ratio to lftp %.2f\n", (own - greetingSeconds) / lftp);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    const CFTPServer server(FTPServerKind::Vsftpd);
    if (!server.GetProblem().isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(server.GetProblem()));
        return 1;
    }
    const CScratchFolder scratch;
    const QString large = scratch.Path(QStringLiteral("large/"));
    const QString small = scratch.Path(QStringLiteral("small/"));
    QDir().mkpath(large);
    QDir().mkpath(small);
    WriteFile(large + QStringLiteral("large.bin"), 300'000'000);
    for (int i = 0; i < 500; ++i) {
        WriteFile(small + QStringLiteral("%1.bin").arg(i, 3, 10, QLatin1Char('0')), 4096);
    }
    const double ownLarge = TimeOwnUpload(server, ListFiles(large));
    const double lftpLarge = TimeLftp(server, large, QStringLiteral("lftp-large"));
    const double curlLarge =
        TimeProgram(QStringLiteral("curl"),
                    {QStringLiteral("-sS"), QStringLiteral("-T"), large + QStringLiteral("large.bin"),
                     QStringLiteral("ftp://127.0.0.1:%1/curl.bin").arg(server.GetPort())});
    Print("1 file of 300 MB", ownLarge, lftpLarge, curlLarge);
    const double ownSmall = TimeOwnUpload(server, ListFiles(small));
    Print("500 files of 4 KiB", ownSmall, TimeLftp(server, small, QStringLiteral("lftp-small")), -1);
    return 0;
}
