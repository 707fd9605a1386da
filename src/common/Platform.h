#pragma once

#include <QString>

// The folder that holds Templates and Styles, with a trailing separator: $VISTORAMA_DATA if set; else the
// executable's folder, a last part "Release" or "Debug" taken off, if it holds Templates; else
// ../share/vistorama beside it.
QString FindProgramFolder();

// A developer's build in "Release" or "Debug" finds the folders of the source tree above it. folder: with a
// trailing separator.
QString WithoutBuildFolder(const QString& folder);

// The user's folder for pictures, without a trailing separator.
QString FindPicturesFolder();

// The user's own folder for temporary files, with a trailing separator. Made with mode 0700 on first use.
// Throws CGenericException if it belongs to somebody else or others may write to it.
QString FindTemporaryFolder();

// The user's folder for records of deployments, which may be lost at any time. Made when it is first needed.
QString FindDeploymentRecordsFolder();

// The user's folder for the sites that were sent to servers, which may be lost at any time. Made when it is
// first needed.
QString FindSitesFolder();

// The user's folder for composed covers, which may be lost at any time. Made when it is first needed.
QString FindCoversFolder();

// The user's folder for the images of the views, which may be lost at any time. Made when it is first needed.
QString FindImageCacheFolder();

// The folder of the settings files.
QString FindSettingsFolder();

// The folder of the settings files for all users of the machine.
QString FindMachineSettingsFolder();

// The user's folder for earlier versions of projects. Made when it is first needed.
QString FindBackupsFolder();

// The user's folder of the servers that were trusted. Made when it is first needed.
QString FindTrustFolder();

// The folder of the user's data files: not that of the settings, which people copy and publish.
QString FindDataFolder();
