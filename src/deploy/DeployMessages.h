#pragma once

#include <cstdint>
#include <variant>

#include <QString>

#include "common/MessageTarget.h"

// The three texts of a failed deployment.
struct DeployError {
    QString description;
    QString reason;
    QString solution;
};

// What a deployment tells the page or program that started it.

// One more page was generated.
struct DEPLOY_PROGRESS {
    static constexpr int Number = 1025;
    int32_t donePages = 0;
    int32_t totalPages = 0;
};

// The generation thread is about to end; the job's error says how it went.
struct DEPLOY_GENERATED {
    static constexpr int Number = 1026;
};

// The generation is done; the upload list is being made.
struct DEPLOY_PREPARING {
    static constexpr int Number = 1027;
};

using DeployMessage = std::variant<DEPLOY_PROGRESS, DEPLOY_PREPARING, DEPLOY_GENERATED>;
using CDeployTarget = CMessageTarget<DeployMessage>;
