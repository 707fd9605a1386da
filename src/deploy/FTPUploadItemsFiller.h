#pragma once

#include <cstdint>
#include <map>

#include <QString>

#include "common/DirectoryProcessor.h"

class CStopSignal;

// One file to send.
struct FTPUploadItem {
    QString localPath;
    QString name; // without directories
    QString
        directory; // relative to the walked root, with "\" between its parts; empty for a file in the root
    uint32_t size = 0; // bytes; 0 if the file couldn't be asked
};

// By full local path in plain string order, which keeps the files of one directory together, so that an
// upload changes its remote directory as seldom as it can.
using FTPUploadMap = std::map<QString, FTPUploadItem>;

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
