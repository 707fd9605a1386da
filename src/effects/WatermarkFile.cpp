#include "effects/WatermarkFile.h"

#include <QFileInfo>

#include "imaging/Image.h"

bool IsReadableWatermark(const QString& path)
{
    // A pipe or a device would keep whoever opens it waiting.
    return QFileInfo(path).isFile() && !CImage::FromFile(path).GetSize().isEmpty();
}
