#pragma once

#include <vector>

#include <QString>
#include <QStringList>

#include "deploy/server/SitePlan.h"

class CStopSignal;

// Sizes and hashes of the files of a generated site, by path. The hashes are kept beside it, so that the next
// call reads only what has changed since: a file with the same size and time is the same, unless its time was
// so close to the reading that a second change could have been missed. Works on all cores.
//
// siteFolder: with a trailing separator. paths: of the site, without those that aren't there. hashesPath: of
// the file of hashes; it may be lost at any time. Throws CFileException for a file that can't be read. When
// stop is set the result is of no use.
std::vector<LocalFile> ReadLocalSite(const QString& siteFolder, const QStringList& paths,
                                     const QString& hashesPath, const CStopSignal& stop);
