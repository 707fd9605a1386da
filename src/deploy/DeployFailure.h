#pragma once

#include <QString>

// A failed deployment in three texts: what happened, why, and what to do.
struct DeployFailure {
    QString caption;
    QString description;
    QString advice;
};
