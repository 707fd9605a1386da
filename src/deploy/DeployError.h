#pragma once

#include <QString>

// The three texts of a failed deployment.
struct DeployError {
    QString description;
    QString reason;
    QString solution;
};
