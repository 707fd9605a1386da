#include "common/DirectoryProcessor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

CDirectoryProcessor::Answer CDirectoryProcessor::OnEnterDirectory(const QString&, const DirectoryEntry&)
{
    return Answer::Continue;
}

void CDirectoryProcessor::OnLeaveDirectory(const QString&, const DirectoryEntry&) {}

void ProcessDirectory(const QString& root, CDirectoryProcessor& processor)
{
    using Answer = CDirectoryProcessor::Answer;
    for (const DirectoryEntry& entry : ListDirectory(root)) {
        const QString path = JoinPath(root, entry.name);
        if (!entry.isDirectory) {
            if (processor.OnFile(path, entry) == Answer::Stop) {
                return;
            }
            continue;
        }
        const Answer answer = processor.OnEnterDirectory(path, entry);
        if (answer == Answer::Stop) {
            return;
        }
        if (answer == Answer::Continue) {
            ProcessDirectory(path, processor);
            processor.OnLeaveDirectory(path, entry);
        }
    }
}

CDirectoryProcessor::Answer CDirectoryRemover::OnEnterDirectory(const QString& path, const DirectoryEntry&)
{
    if (!QFileInfo(path).isSymLink()) {
        return Answer::Continue;
    }
    QFile::remove(path);
    return Answer::Skip;
}

CDirectoryProcessor::Answer CDirectoryRemover::OnFile(const QString& path, const DirectoryEntry&)
{
    QFile::remove(path);
    return Answer::Continue;
}

void CDirectoryRemover::OnLeaveDirectory(const QString& path, const DirectoryEntry&)
{
    QDir().rmdir(path);
}

bool RemoveDirectoryTree(const QString& path)
{
    CDirectoryRemover remover;
    ProcessDirectory(path, remover);
    return QDir().rmdir(path);
}
