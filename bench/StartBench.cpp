// How long the desktop program takes from its start to its first page, with all pictures of the page there,
// and how much of that is the browser control's own start: that of a program that shows an empty page and
// does nothing else. On a display in memory; the first run of each fills the caches of disk and pictures and
// does not count.

#include <algorithm>
#include <cstdio>
#include <vector>

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTcpServer>
#include <QThread>
#include <QWebEngineView>

#include "PageProbe.h"
#include "common/FileSystem.h"
#include "support/ScratchFolder.h"
#include "support/VirtualDisplay.h"

namespace {

constexpr int RunCount = 7;
constexpr int Patience = 30'000; // milliseconds

// The other half of this program: a browser control and nothing else.
int ShowEmptyPage(int argumentCount, char** arguments)
{
    QApplication application(argumentCount, arguments);
    QWebEngineView view;
    QObject::connect(&view, &QWebEngineView::loadFinished, &application, [] {
        std::puts("shown");
        std::fflush(stdout);
        QApplication::quit();
    });
    view.resize(1080, 800);
    view.show();
    view.setHtml(QStringLiteral("<p>empty</p>"));
    return QApplication::exec();
}

qint64 MeasureBrowser(const QString& thisProgram)
{
    QElapsedTimer timer;
    timer.start();
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(thisProgram, {QStringLiteral("--empty-page")});
    process.waitForReadyRead(Patience);
    const qint64 elapsed = timer.elapsed();
    process.waitForFinished(Patience);
    return elapsed;
}

bool HasFirstPage(quint16 port)
{
    const QString isComplete = QStringLiteral(
        "viewShell.evaluate(\"document.images.length > 9 && [...document.images].every(i => i.complete)\")");
    for (const QString& address : CPageProbe::ListPages(port)) {
        if (CPageProbe(address).Evaluate(isComplete).toBool()) {
            return true;
        }
    }
    return false;
}

quint16 FindFreePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

qint64 MeasureProgram(const QString& project, const QString& home)
{
    const quint16 port = FindFreePort();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/config"));
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), home + QStringLiteral("/cache"));
    environment.insert(QStringLiteral("VISTORAMA_DATA"), QStringLiteral(DATA_FOLDER));
    environment.insert(QStringLiteral("QTWEBENGINE_REMOTE_DEBUGGING"),
                       QStringLiteral("127.0.0.1:%1").arg(port));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer timer;
    timer.start();
    process.start(QStringLiteral(PROGRAM_FILE), {project});
    while (!HasFirstPage(port) && timer.elapsed() < Patience) {
        QThread::msleep(5);
    }
    const qint64 elapsed = timer.elapsed();
    process.terminate();
    process.waitForFinished(Patience);
    return elapsed;
}

template <class Measure>
qint64 Median(const Measure& measure)
{
    measure();
    std::vector<qint64> times;
    for (int run = 0; run < RunCount; ++run) {
        times.push_back(measure());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount > 1 && QByteArray(arguments[1]) == "--empty-page") {
        return ShowEmptyPage(argumentCount, arguments);
    }
    const CVirtualDisplay display;
    PutDisplayIntoEnvironment(display.GetName());
    const CScratchFolder scratch;
    const QString sample = scratch.Path(QStringLiteral("sample"));
    MakeDirectoryPath(sample);
    CopyDirectoryTree(QStringLiteral(DATA_FOLDER "/sample"), sample);

    const qint64 browser = Median([&] { return MeasureBrowser(QString::fromLocal8Bit(arguments[0])); });
    const qint64 program = Median([&] {
        return MeasureProgram(sample + QStringLiteral("/sample.gallery"),
                              scratch.Path(QStringLiteral("home")));
    });
    std::printf("start to the first page, warm:   %5lld ms\n", static_cast<long long>(program));
    std::printf("the browser control by itself:   %5lld ms (%lld %%)\n", static_cast<long long>(browser),
                static_cast<long long>(100 * browser / std::max<qint64>(program, 1)));
    return 0;
}
