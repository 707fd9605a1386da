#pragma once

#include <QString>

#include "deploy/server/SendFailure.h"

// A failed deployment in three texts: what happened, why, and what to do.
struct DeployFailure {
    QString caption;
    QString description;
    QString advice;
};

// A person has to decide about the server's identity, or about its protection.
bool IsServerDoubt(const SendFailure& failure);

DeployFailure DescribeFailure(const SendFailure& failure);
