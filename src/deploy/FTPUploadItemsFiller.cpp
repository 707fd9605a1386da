#include "deploy/FTPUploadItemsFiller.h"

#include <QFileInfo>

#include "common/StopSignal.h"

CFTPUploadItemsFiller::CFTPUploadItemsFiller(FTPUploadMap& map, qsizetype rootLength, const CStopSignal& stop)
    : map(map), rootLength(rootLength), stop(stop)
{}

CDirectoryProcessor::Answer CFTPUploadItemsFiller::OnFile(const QString& path, const DirectoryEntry& entry)
{
    const qsizetype directoryEnd = path.size() - entry.name.size() - 1;
    FTPUploadItem item{.localPath = path, .name = entry.name, .directory = {}, .size = 0};
    if (directoryEnd > rootLength) {
        // The upload cuts remote directories at this separator, whatever the local one is.
        item.directory =
            path.mid(rootLength, directoryEnd - rootLength).replace(QLatin1Char('/'), QLatin1Char('\\'));
    }
    item.size = static_cast<uint32_t>(QFileInfo(path).size());
    map.try_emplace(path, item);
    return stop.IsSet() ? Answer::Stop : Answer::Continue;
}

qsizetype CFTPUploadItemsFiller::RootLengthOf(const QString& root)
{
    return WithTrailingSeparator(root).size();
}
