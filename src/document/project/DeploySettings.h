#pragma once

#include <cstdint>

#include <QString>

#include "common/xmldomutils.h"

// The choices of the last deployment, kept in the project file: a plain record.
struct CDeploySettings {
    QString folder;
    int32_t destination_kind = 0; // 0 folder, 1 FTP
    QString ftp_directory;
    int32_t ftp_destination = -1; // index in the store of destinations, -1 for none
    int32_t redeploy_mode = 1;
    bool open_browser_after_deploy = true;

    bool operator==(const CDeploySettings&) const = default;

    // Appends the element "deploy_settings" to the project's element and returns it.
    CXmlElement Write(CXmlElement& project) const;
    // Without the element nothing changes. A number that is none counts as missing.
    void Read(const CXmlElement& project);
};
