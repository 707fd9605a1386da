#pragma once

#include <QString>

// Whether the file is a picture that can be drawn as a watermark. Only its beginning is read, so that it may
// be damaged further on.
bool IsReadableWatermark(const QString& path);
