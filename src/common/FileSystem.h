#pragma once

#include <vector>

#include <QByteArray>
#include <QString>

// Paths are kept with native separators; the helpers that cut them accept "/" and "\", so that a project made
// on another system still finds its pictures by name. All functions are thread-safe.

// The text after the last separator; the whole text if there is none.
QString ExtractLastName(const QString& path);

// The text up to and including the last separator; empty if there is none.
QString ExtractFolder(const QString& path);

// folder + one separator + name. Keeps a separator that folder already ends in.
QString JoinPath(const QString& folder, const QString& name);

QString WithTrailingSeparator(const QString& folder);

// What a page on the screen writes for a file: the path, with those characters as %XX ("#" as "%23") that
// would end it in an address or in an attribute, or mean something else there.
QString AddressOfFile(const QString& path);

// A file-system entry of that name, of any kind, can be found.
bool FileExists(const QString& path);
bool FolderExists(const QString& path);

struct DirectoryEntry {
    QString name;
    bool isDirectory = false; // a link to a folder counts as a folder
    bool isHidden = false;    // the name begins with "."
    bool isReadOnly = false;  // the owner has no write permission
};

// All entries but "." and "..", in name order: without regard to case, then exact, so that a run is
// repeatable on every file system. A folder that can't be listed has no entries.
std::vector<DirectoryEntry> ListDirectory(const QString& folder);

// Who may look into a directory that is made: whom the umask lets, or its owner alone (mode 0700).
enum class DirectoryAccess { Usual, OwnerOnly };

// Makes a directory with all missing parents. Those that are there keep their rights. Throws CWin32Exception.
void MakeDirectoryPath(const QString& path, DirectoryAccess access = DirectoryAccess::Usual);

// Copies a tree over what is there, hidden entries left out; a read-only file in the way is made writable
// first, and one that holds the same bytes already is left alone. Throws CWin32Exception.
void CopyDirectoryTree(const QString& source, const QString& destination);

enum class Durability { Synced, Plain };

// Writes a file under a temporary name in the same folder and renames it over the old one, which stays whole
// if anything fails. Synced: the bytes are on the disk before the old file goes. Returns 0, or the value of
// errno of the step that failed. A file without write permission counts as failed with EACCES.
int ReplaceFile(const QString& path, const QByteArray& bytes, Durability durability);

// An ordinary file of exactly these bytes is there: no link, nor what can't be read.
bool IsFileOf(const QString& path, const QByteArray& bytes);

// ReplaceFile, synced. Throws CWin32Exception with "Could not write file %s.".
void WriteFileAtomically(const QString& path, const QByteArray& bytes);

// Throws CWin32Exception with "Could not read file %s.".
QByteArray ReadWholeFile(const QString& path);

// Removes what ReplaceFile has left in the folder in programs that were ended in the middle: temporary files
// of this user, an hour old or older, whose programs don't run any more. What can't be removed stays.
void RemoveAbandonedTemporaries(const QString& folder);
