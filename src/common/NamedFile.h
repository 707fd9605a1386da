#pragma once

#include <QString>

// A file or folder that a definition or a page of a layout names. Whoever wrote them may not be who uses
// them, so a name reaches what lies below one folder only: not over "..", not by an absolute path, not
// through a link. A name that differs in capitals alone is found: it was written where that makes no
// difference.
struct NamedFile {
    enum class State { Found, Missing, LeadsOut };

    State state = State::Missing;
    QString path;               // where it is, or would be; without a separator at its end
    bool differsInCase = false; // from the name
};

// folder: where the name starts. root: what it may not leave. "\" in a name stands for "/" where no file has
// that letter in its name. An empty name is missing. What is found lies below root, and is not root itself.
NamedFile FindNamedFile(const QString& folder, const QString& name, const QString& root);
