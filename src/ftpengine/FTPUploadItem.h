#pragma once

#include <cstdint>
#include <map>

#include <QString>

// One file to send.
struct FTPUploadItem {
    QString localPath;
    QString name;      // without directories
    QString directory; // relative to the root of the upload, with "\" between its names; empty in the root
    uint32_t size = 0; // bytes; 0 if the file couldn't be asked
};

// By full local path in plain string order, which keeps the files of one directory together, so that an
// upload changes its remote directory as seldom as it can.
using FTPUploadMap = std::map<QString, FTPUploadItem>;
