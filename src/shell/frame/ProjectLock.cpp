#include "shell/frame/ProjectLock.h"

#include <QFile>
#include <QSysInfo>

#include "common/FileSystem.h"

CProjectLock::CProjectLock(const QString& projectPath)
    : file(std::make_unique<QLockFile>(PathFor(projectPath)))
{
    // A lock ends with its program, however long that runs.
    file->setStaleLockTime(0);
    Retry();
}

void CProjectLock::Retry()
{
    if (file == nullptr || state == State::Held) {
        return;
    }
    if (file->tryLock()) {
        state = State::Held;
    } else {
        state = file->error() == QLockFile::LockFailedError ? State::OpenElsewhere : State::None;
    }
}

QString CProjectLock::GetOtherComputer() const
{
    qint64 process = 0;
    QString computer;
    QString program;
    if (state != State::OpenElsewhere || !file->getLockInfo(&process, &computer, &program)) {
        return QString();
    }
    return computer == QSysInfo::machineHostName() ? QString() : computer;
}

void CProjectLock::Seize()
{
    if (state == State::OpenElsewhere) {
        QFile::remove(file->fileName());
        Retry();
    }
}

QString CProjectLock::PathFor(const QString& projectPath)
{
    return ExtractFolder(projectPath) + QLatin1Char('.') + ExtractLastName(projectPath) +
           QStringLiteral(".lock");
}
