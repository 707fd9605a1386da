#pragma once

#include <cstdint>
#include <vector>

#include <QString>

#include "ftpengine/net/FTPReply.h"

// What a task hands back. A value, owned by whoever receives it.
struct CTaskResult {
    enum class Kind { Success = 0, NetworkFailure = 1, ServerRefusal = 2 };

    FTPReply reply;                  // the last one of the task
    std::vector<QString> transcript; // each command and each reply in order, the password included
    int32_t status = 0;              // the number that ended the task (EngineStatus.h), 0 if none did

    Kind GetKind() const;
    bool IsSuccess() const { return GetKind() == Kind::Success; }
};
