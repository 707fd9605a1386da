#pragma once

#include <QByteArray>
#include <QProcess>
#include <QSize>

// An X display of its own, without a window manager, in memory. Gone at the end of the object.
class CVirtualDisplay {
public:
    explicit CVirtualDisplay(QSize size = QSize(1440, 900));
    ~CVirtualDisplay();
    CVirtualDisplay(const CVirtualDisplay&) = delete;
    CVirtualDisplay& operator=(const CVirtualDisplay&) = delete;

    // ":7"; empty if it could not be started.
    const QByteArray& GetName() const { return name; }

    QSize GetSize() const { return size; }

    // The whole screen, or the window of this number, as a PNG file. False if it could not be taken.
    bool TakePicture(const QString& path, const QString& window = QStringLiteral("root")) const;

private:
    const QSize size;
    QProcess server;
    QByteArray name;
};

// What Qt and its browser control need of the environment on such a display: no graphics card, and for root,
// no sandbox.
void PutDisplayIntoEnvironment(const QByteArray& displayName);
