#include "support/VirtualDisplay.h"

#include <unistd.h>

#include <QDir>
#include <QFileInfo>

CVirtualDisplay::CVirtualDisplay(QSize size) : size(size)
{
    const QString screen = QStringLiteral("%1x%2x24").arg(size.width()).arg(size.height());
    // The server chooses a free number and writes it to its standard output once it is ready.
    server.setStandardErrorFile(QProcess::nullDevice());
    server.start(QStringLiteral("Xvfb"),
                 {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                  QStringLiteral("0"), screen, QStringLiteral("-nolisten"), QStringLiteral("tcp"),
                  QStringLiteral("-noreset")});
    constexpr int Patience = 30'000;
    while (!server.canReadLine()) {
        if (!server.waitForReadyRead(Patience)) {
            return;
        }
    }
    name = ':' + server.readLine().trimmed();
}

CVirtualDisplay::~CVirtualDisplay()
{
    server.terminate();
    server.waitForFinished();
}

bool CVirtualDisplay::TakePicture(const QString& path, const QString& window) const
{
    QDir().mkpath(QFileInfo(path).path());
    return QProcess::execute(QStringLiteral("import"), {QStringLiteral("-display"), QString::fromLatin1(name),
                                                        QStringLiteral("-window"), window, path}) == 0;
}

void PutDisplayIntoEnvironment(const QByteArray& displayName)
{
    qputenv("DISPLAY", displayName);
    qunsetenv("WAYLAND_DISPLAY");
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu");
    qputenv("QT_QUICK_BACKEND", "software");
    if (::geteuid() == 0) {
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    }
}
