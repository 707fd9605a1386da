#include "support/ProcessTree.h"

#include <csignal>
#include <map>
#include <vector>

#include <QDir>
#include <QFile>

namespace {

// By the process that has started them.
std::multimap<qint64, qint64> FindChildren()
{
    std::multimap<qint64, qint64> children;
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        QFile status(QStringLiteral("/proc/%1/stat").arg(entry));
        // A process may end between the listing and the reading.
        if (entry.toLongLong() > 0 && status.open(QIODevice::ReadOnly)) {
            // "12 (name) S 1 ...", where the name may hold anything.
            const QByteArray line = status.readAll();
            children.emplace(line.mid(line.lastIndexOf(')') + 2).split(' ').value(1).toLongLong(),
                             entry.toLongLong());
        }
    }
    return children;
}

} // namespace

void KillTree(QProcess& process)
{
    // What is stopped starts nothing more while the others are looked for.
    std::vector<qint64> found{process.processId()};
    for (size_t i = 0; i < found.size(); ++i) {
        ::kill(static_cast<pid_t>(found[i]), SIGSTOP);
        const auto children = FindChildren();
        for (auto [child, end] = children.equal_range(found[i]); child != end; ++child) {
            found.push_back(child->second);
        }
    }
    for (const qint64 each : found) {
        ::kill(static_cast<pid_t>(each), SIGKILL);
    }
    process.waitForFinished();
}
