#pragma once

#include <map>

#include <QByteArray>
#include <QDateTime>
#include <QString>

// The files that the pages of one view have shown. The browser keeps what it has read of a file for
// the next page, so a file that has changed since gets another address in it. Owned by the view's
// host; screen's thread.
class CServedFiles {
public:
    void Note(const QString& path);
    // The page with new addresses of all files that have changed since they were served first.
    QByteArray Readdressed(const QByteArray& page);

private:
    struct File {
        QDateTime time;
        qint64 size = 0;
        int version = 0; // 0: as it was served first
    };
    static File StateOf(const QString& path);
    static void Readdress(QByteArray& page, const QString& path, int version);

    std::map<QString, File> files;
};
