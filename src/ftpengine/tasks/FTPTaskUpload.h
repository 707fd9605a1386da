#pragma once

#include "ftpengine/FTPUploadItem.h"
#include "ftpengine/tasks/FTPTask.h"

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

private:
    const QString title;
    const FTPUploadMap items;
};

// The road from a directory to the root, with "\" between its names: "a\b" gives "..\..".
QString WayBackFrom(const QString& directory);
