#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include <QString>

// What tells one state of a file from another without reading all of it. Times alone don't: programs write
// files of the same size and set the old time. A plain value.
struct FileIdentity {
    int64_t size = 0;     // bytes
    int64_t modified = 0; // nanoseconds since 1970; programs can set it
    int64_t changed = 0;  // nanoseconds since 1970; only the system sets it, where the file system knows it
    uint64_t sample = 0;  // of some of the file's bytes

    bool operator==(const FileIdentity&) const = default;

    // Its last change is no longer ago than that. Where the times are of another clock than the system's, it
    // may be for long.
    bool IsYoungerThan(std::chrono::milliseconds age) const;

    // Nothing if the file can't be read. At most 20 KiB of it are.
    static std::optional<FileIdentity> Of(const QString& path);

    // Of what the file holds alone: without its times, and the sample is of all its bytes. For files that are
    // written anew in every run. Nothing if it can't be read.
    static std::optional<FileIdentity> OfContent(const QString& path);
};

// Size and time of modification alone, for files that this program itself has written. Nothing if there is no
// file.
struct FileStamp {
    int64_t size = 0;
    int64_t modified = 0; // nanoseconds since 1970

    bool operator==(const FileStamp&) const = default;

    static std::optional<FileStamp> Of(const QString& path);
};
