#pragma once

#include <QString>

// Names on the server. A path of the site has "/" between its names and is seen from the site's own
// directory; all that a site doesn't publish itself has a name that is told here.

// The directory of a site on a server. A value.
struct ServerPlace {
    QString directory; // seen from where sessions are opened; empty: that directory itself

    // A path of the site as sessions want it; the place's own for "".
    QString PathOf(const QString& path) const;
};

// Keeps lists of others from leading elsewhere: neither absolute nor out of the site, nor into the folder of
// the manifest, and without control characters.
bool IsSitePath(const QString& path);

// The path's directory, empty in the root, and its last name.
QString DirectoryOf(const QString& path);
QString NameOf(const QString& path);

// The folder that holds what the program notes on the server.
inline const QString ManifestFolder = QStringLiteral(".vistorama");

// Of a project's manifest, in that folder. Each project has its own, so that two in one directory don't take
// each other's files for their own. projectKey: by which the project is known.
QString ManifestPathFor(const QString& projectKey);

// The name that a file has while it is on its way, in the directory of the path. Always the same for one
// sender and path, so that another try replaces what the first has left. sender: see IsSender. Without a
// leading ".", since some servers take no such names or don't list them; with an ending that no web server
// shows as a page.
QString TemporaryPathFor(const QString& sender, const QString& path);

// Who has sent the file of that name, which may have a directory; empty if it is no temporary one.
QString SenderOfTemporary(const QString& path);

// Eight hexadecimal digits, drawn once for each computer, project and target.
QString MakeSender();
bool IsSender(const QString& text);

// What a file is to visitors. A page leads to other files, an entry is what a directory's address shows.
enum class SiteFileKind { Asset, Page, Entry };

// A page by its ending, and by its place: in the root and in the folders of galleries, which have numbers
// for names, there are only pages.
SiteFileKind KindOfSiteFile(const QString& path);
