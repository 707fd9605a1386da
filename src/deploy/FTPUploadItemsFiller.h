#pragma once

#include <QString>

#include "common/DirectoryProcessor.h"
#include "ftpengine/messages/FTPMessages.h"

class CStopSignal;

// Walks a generated site into an upload map. An empty directory has no item, so it does not come to be on the
// server.
class CFTPUploadItemsFiller final : public CDirectoryProcessor {
public:
    // map and stop are borrowed. rootLength: how many characters to cut from the head of a full path to get
    // the path relative to the walked root, see RootLengthOf.
    CFTPUploadItemsFiller(FTPUploadMap& map, qsizetype rootLength, const CStopSignal& stop);

    Answer OnFile(const QString& path, const DirectoryEntry& entry) override;

    static qsizetype RootLengthOf(const QString& root);

private:
    FTPUploadMap& map;
    const qsizetype rootLength;
    const CStopSignal& stop;
};
