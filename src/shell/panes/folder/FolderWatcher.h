#pragma once

#include <functional>

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

// Tells when the files of a folder come, go, or are written to the end. Many changes in a row are told of
// once. Owned by the folder view; screen's thread.
class CFolderWatcher final : public QObject {
public:
    explicit CFolderWatcher(std::function<void()> changed);

    // Instead of what was watched before. To be called before the folder is listed. A folder that is not
    // there is looked for.
    void Watch(const QString& folder);
    // Files of the folder whose content is waited for. The system limits how many can be watched; of a larger
    // number the first are.
    void WatchFiles(const QStringList& paths);

private:
    void LookForFolder();

    const std::function<void()> changed;
    QString folder;
    QFileSystemWatcher watcher;
    QTimer pause;   // gathers changes
    QTimer lookOut; // for a folder that goes or comes
    bool isThere = false;
};
