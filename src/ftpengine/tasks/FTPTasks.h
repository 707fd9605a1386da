#pragma once

#include <optional>

#include "ftpengine/tasks/FTPTask.h"

class CFTPCommandSequenceChangeDir;

// The login and the change to the destination's directory are the test.
class CFTPTaskTestConnection final : public CFTPTask {
public:
    using CFTPTask::CFTPTask;

protected:
    FTPMessage MakeStartedMessage() const override { return FTP_TEST_STARTED{}; }
    FTPMessage MakeFinishedMessage(CTaskResult result) override;
    void DoWork(FTPConversation&) override {}
    void DoSessionWork(CRemoteSession&) override {}
};

// Lists the deepest directory of the destination's path that exists.
class CFTPTaskGetDirectoryContent final : public CFTPTask {
public:
    using CFTPTask::CFTPTask;

protected:
    FTPMessage MakeStartedMessage() const override { return FTP_LIST_STARTED{}; }
    FTPMessage MakeFinishedMessage(CTaskResult result) override;
    void EnterDirectory(FTPConversation& conversation) override;
    void DoWork(FTPConversation& conversation) override;
    void DoSessionWork(CRemoteSession& session) override;
    QString GetSessionDirectory() const override { return {}; }

private:
    std::optional<CFTPDirectoryContent> content;
};

class CFTPTaskCreateDirectory final : public CFTPTask {
public:
    CFTPTaskCreateDirectory(Setting setting, const QString& name);

protected:
    FTPMessage MakeStartedMessage() const override { return FTP_CREATE_STARTED{}; }
    FTPMessage MakeFinishedMessage(CTaskResult result) override;
    QStringList GetNames() const override { return {name}; }
    void DoWork(FTPConversation& conversation) override;
    void DoSessionWork(CRemoteSession& session) override;

private:
    const QString name;
};

class CFTPTaskRenameDirectory final : public CFTPTask {
public:
    CFTPTaskRenameDirectory(Setting setting, const QString& oldName, const QString& newName);

protected:
    FTPMessage MakeStartedMessage() const override { return FTP_RENAME_STARTED{}; }
    FTPMessage MakeFinishedMessage(CTaskResult result) override;
    QStringList GetNames() const override { return {oldName, newName}; }
    void DoWork(FTPConversation& conversation) override;
    void DoSessionWork(CRemoteSession& session) override;

private:
    const QString oldName;
    const QString newName;
};

// Sends the files of an upload map, in its order, below the destination's directory. The first failure of any
// step ends it; nothing is tried again.
class CFTPTaskUpload final : public CFTPTask {
public:
    CFTPTaskUpload(Setting setting, const QString& title, const FTPUploadMap& items);

protected:
    FTPMessage MakeStartedMessage() const override { return FTP_UPLOAD_STARTED{.title = title}; }
    FTPMessage MakeFinishedMessage(CTaskResult result) override;
    QStringList GetNames() const override;
    void DoWork(FTPConversation& conversation) override;
    void DoSessionWork(CRemoteSession& session) override;

private:
    const QString title;
    const FTPUploadMap items;
};

// Changes to the deepest directory of the destination's path, with "/" between its names, that exists, and
// stores its path in the destination. Throws the server's refusal if it isn't 550, or if there is nothing
// left to try; and an int.
FTPReply ChangeDirWithFallback(FTPDestinationConnection& destination, CFTPCommandSequenceChangeDir& sequence);

// The road from a directory to the root, with "\" between its names: "a\b" gives "..\..".
QString WayBackFrom(const QString& directory);
