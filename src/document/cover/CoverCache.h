#pragma once

#include <atomic>
#include <chrono>
#include <vector>

#include <QByteArray>
#include <QString>

struct CoverPicture;

// Covers that were composed in earlier runs, kept in the user's cache under a key of all that they are made
// of, so that a run only copies them. What is in there may be lost or damaged at any time: a cover that can't
// be had from here is composed. One for a project, which owns it; used by all threads that make covers.
class CCoverCache {
public:
    struct Options {
        QString folder; // made when it is first needed; empty: nothing is kept
        // A picture that was changed so shortly before it was looked at may be changed again without a sign,
        // since the clocks of file systems are coarse; covers of it are composed by the next run again.
        std::chrono::milliseconds restless = std::chrono::milliseconds(3000);
        int64_t limit = 256 * 1024 * 1024; // bytes of all covers; beyond it the longest unused ones go
    };

    explicit CCoverCache(const Options& options);

    // Writes the cover to the path: as it was kept, or composed by SaveCover, and kept then. Returns its key;
    // null if it can't be kept, because a picture of it is damaged or may have changed meanwhile. Throws what
    // SaveCover throws.
    QByteArray MakeCover(const QString& path, const std::vector<CoverPicture>& pictures);

    // Of a cover of 0, 1, 2 or 4 pictures at that path. To be asked for before the first picture is opened: a
    // change that comes later then has another key. Null if a picture can't be read or is restless, or shows
    // a cover that has no key.
    QByteArray KeyOf(const QString& path, const std::vector<CoverPicture>& pictures) const;

    // Writes the cover kept under the key to the path. False, with no file written, if there is none or if it
    // is damaged.
    bool Restore(const QByteArray& key, const QString& path) const;

    // Keeps the file. What hinders it is no error, the next run takes longer then.
    void Keep(const QByteArray& key, const QString& path);

    // Bytes of all covers that are kept.
    int64_t GetSize() const;
    void Clear();

private:
    QString FileOf(const QByteArray& key) const;
    void RemoveLongestUnused() const;

    const Options options;
    std::atomic<int64_t> untilTidying = 0; // bytes to be kept before the next look at the limit
};
