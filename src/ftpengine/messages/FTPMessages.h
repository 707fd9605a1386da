#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <variant>
#include <vector>

#include <QString>

#include "common/MessageTarget.h"
#include "ftpengine/messages/FTPDirectoryContent.h"
#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/session/ServerIdentity.h"

// One file to send.
struct FTPUploadItem {
    QString localPath;
    QString name;      // without directories
    QString directory; // relative to the root of the upload, with "\" between its names; empty in the root
    uint32_t size = 0; // bytes; 0 if the file couldn't be asked
};

// By full local path in plain string order, which keeps the files of one directory together, so that an
// upload changes its remote directory as seldom as it can.
using FTPUploadMap = std::map<QString, FTPUploadItem>;

// What a task hands back. A value, owned by whoever receives it.
struct CTaskResult {
    enum class Kind { Success = 0, NetworkFailure = 1, ServerRefusal = 2 };

    FTPReply reply;                         // the last one of the task
    std::vector<QString> transcript;        // each command and each reply in order, without secrets
    int32_t status = 0;                     // the number that ended the task (EngineStatus.h), 0 if none did
    std::optional<ServerIdentity> identity; // of a server that showed one

    Kind GetKind() const;
    bool IsSuccess() const { return GetKind() == Kind::Success; }
};

// What the engine tells the window or program that gave it a task. Each has a number of its own, as a message
// to a window has. They are values, owned by the receiver; they come in the order of the task's steps, from
// the engine's threads.

struct FTP_TEST_STARTED {
    static constexpr int Number = 0x800;
};

struct FTP_TEST_FINISHED {
    static constexpr int Number = 0x801;
    CTaskResult result;
};

struct FTP_LIST_STARTED {
    static constexpr int Number = 0x802;
};

struct FTP_LIST_FINISHED {
    static constexpr int Number = 0x803;
    CTaskResult result;
    std::optional<CFTPDirectoryContent> content; // none if the listing wasn't reached
};

struct FTP_CREATE_STARTED {
    static constexpr int Number = 0x804;
};

struct FTP_CREATE_FINISHED {
    static constexpr int Number = 0x805;
    CTaskResult result;
};

struct FTP_RENAME_STARTED {
    static constexpr int Number = 0x806;
};

struct FTP_RENAME_FINISHED {
    static constexpr int Number = 0x807;
    CTaskResult result;
};

struct FTP_UPLOAD_STARTED {
    static constexpr int Number = 0x808;
    QString title;
};

struct FTP_UPLOAD_FILE_STARTED {
    static constexpr int Number = 0x809;
    QString localPath;
    QString title;
};

// One block of a file has been given to the connection.
struct FTP_UPLOAD_PROGRESS {
    static constexpr int Number = 0x80A;
    QString localPath;
    uint32_t bytes = 0; // of this block, no running total
};

struct FTP_UPLOAD_FILE_FINISHED {
    static constexpr int Number = 0x80B;
    QString localPath;
    QString title;
};

struct FTP_UPLOAD_FINISHED {
    static constexpr int Number = 0x80C;
    CTaskResult result;
    QString title;
};

using FTPMessage =
    std::variant<FTP_TEST_STARTED, FTP_TEST_FINISHED, FTP_LIST_STARTED, FTP_LIST_FINISHED, FTP_CREATE_STARTED,
                 FTP_CREATE_FINISHED, FTP_RENAME_STARTED, FTP_RENAME_FINISHED, FTP_UPLOAD_STARTED,
                 FTP_UPLOAD_FILE_STARTED, FTP_UPLOAD_PROGRESS, FTP_UPLOAD_FILE_FINISHED, FTP_UPLOAD_FINISHED>;
using CFTPTarget = CMessageTarget<FTPMessage>;
