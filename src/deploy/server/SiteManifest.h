#pragma once

#include <map>
#include <optional>

#include <QByteArray>
#include <QJsonObject>
#include <QString>

// A file that a project has put on a server.
struct ManifestFile {
    int64_t size = 0; // bytes
    QByteArray hash;  // of CContentHash; empty while the file is on its way: it is ours, and may be old, new
                      // or absent
    bool isSeen = false; // if it isn't whole: it was there before, so that pages may lead to it
    int64_t time = 0;    // when it was sent, by the clock of the computer that sent it; seconds since 1970
    QJsonObject rest;    // fields of other versions

    bool IsWhole() const { return !hash.isEmpty(); }
};

using ManifestFiles = std::map<QString, ManifestFile>; // by path of the site

// What a project has put into one directory of a server. It lies there, in a folder of its own, so that
// another computer can go on. A plain value; its form is told in docs/formats.md.
struct SiteManifest {
    QString program; // version that has written it
    QString project; // by which the project is known
    QString run;     // that has written it: another one for each deployment that sends anything
    ManifestFiles files;
    QJsonObject rest; // fields of other versions

    QByteArray Format() const;
    // Nothing for what is damaged, cut off or of a newer form. Entries whose paths lead out of the site are
    // left out.
    static std::optional<SiteManifest> Parse(const QByteArray& bytes);
};

// A run's name: 16 hexadecimal digits, drawn by chance.
QString MakeRunName();
