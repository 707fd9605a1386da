#pragma once

#include <QString>

#include "common/XmlRest.h"

// What a project is as a file. A plain value.
struct ProjectIdentity {
    QString path; // absolute; empty for a project that has no file yet
    // By which it is known whatever the file is called: 32 hexadecimal digits. Empty for a file of an older
    // version until it is saved.
    QString id;
    QString version;        // of the format, as it was read
    QString readOnlyReason; // null for a project that may be saved to its path
};

// What a project's file says beyond what this version knows, by the elements that it stands in.
struct ProjectRests {
    CXmlRest root;
    CXmlRest folders;
    CXmlRest deploySettings;
};

// A new id, from the system's source of random numbers.
QString MakeProjectId();

bool IsProjectId(const QString& text);

// Whether two paths lead to one file, or would if it were made: also by links.
bool IsSameProjectFile(const QString& a, const QString& b);
