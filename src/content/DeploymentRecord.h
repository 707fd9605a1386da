#pragma once

#include <chrono>
#include <map>

#include <QString>
#include <QStringList>

#include "common/FileIdentity.h"
#include "common/FileSystem.h"
#include "common/ThreadSafety.h"

// What the program has written into one target folder, and what each image there was made from. With it, the
// next deployment into the folder leaves images alone that would come out the same, and removes files that it
// no longer writes, if nobody else has changed them since. It lies in the user's cache: without it,
// everything is made anew.
//
// Made for one run; all operations but construction, SetRunFolder, RemoveLeftovers and Save may be called by
// several threads.
class CDeploymentRecord {
public:
    using Milliseconds = std::chrono::milliseconds;
    static constexpr Milliseconds usualRestless{3000};

    // path: of the record; a file that is missing or damaged is an empty record. restless: a source that was
    // changed so shortly before it was looked at may be changed again without a sign, since the clocks of
    // file systems are coarse, down to two seconds; its images are made anew by the next run. durability:
    // Plain for a target that may be lost together with its record when the power goes.
    CDeploymentRecord(const QString& path, const QString& targetFolder, Milliseconds restless = usualRestless,
                      Durability durability = Durability::Synced);

    // The record's file for a target folder, below the folder of all records. One for each project: what
    // another one has put into the folder is nobody's leftover. projectKey: by which the project is known.
    static QString PathFor(const QString& recordsFolder, const QString& targetFolder,
                           const QString& projectKey = QString());

    // Gives the record the file of another key, once: if there is none for its own.
    static void TakeOver(const QString& path, const QString& formerPath);

    // To be called before the first file is written. If the run ends without Save, the next one knows by the
    // time of a file that this one has written it. Throws CWin32Exception.
    void Begin() const;

    // The run's own folder, with a trailing separator. Its name and the times of its files are others in each
    // run: what is made from them is known by their names and contents.
    void SetRunFolder(const QString& folder) { runFolder = folder; }

    // What an image is made from.
    struct Origin {
        QString sourcePath; // for a file of the run's own folder its name alone
        FileIdentity source;
        QString key; // of the chain; null: not known
    };
    struct Image {
        Origin origin;
        bool isWhole = true; // false: the source was damaged
    };

    // That of a source's images, without a key. Nothing if it can't be read.
    std::optional<Origin> FindOrigin(const QString& sourcePath) const;

    // The image as it was noted, if the file is still the one that was written then and would come out the
    // same from this origin; it then counts as written in this run. Null otherwise.
    const Image* FindCurrent(const QString& path, const Origin& origin);

    // An earlier run has written the file, or this one.
    bool IsListed(const QString& path) const;

    // Relative paths of all files that are listed now, in their order.
    QStringList GetFiles() const;

    // A file has been written. Those outside the target folder are not noted.
    void NoteFile(const QString& path);
    void NoteImage(const QString& path, const Image& image);

    // At the end of a complete run: removes what earlier runs have written and this one hasn't, unless
    // somebody has changed it since, and folders that are empty then.
    void RemoveLeftovers();

    // Throws CWin32Exception.
    void Save() const;

private:
    struct Entry {
        FileStamp stamp;
        std::optional<Image> image;
        bool isOfThisRun = false; // not kept in the file
    };

    void Load();
    void Write(int64_t openSince) const;
    QString RelativePath(const QString& path) const;
    void Note(const QString& path, std::optional<Image> image);
    void RemoveEmptyFolders(QString folder) const;

    // Constant after construction.
    const QString path;
    const QString targetFolder; // with a trailing separator
    const Milliseconds restless;
    const Durability durability;
    QString runFolder; // set before the run
    // Nanoseconds since 1970: when the last run began, if it was ended without notice; else 0.
    int64_t abandonedSince = 0;

    mutable CMutex mutex;
    std::map<QString, Entry> entries VISTORAMA_GUARDED_BY(mutex); // by relative path
};
