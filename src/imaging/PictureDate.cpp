#include "imaging/PictureDate.h"

#include <vips/vips8>

#include "common/Exceptions.h"
#include "common/Trace.h"
#include "imaging/codecs/PictureReader.h"
#include "imaging/codecs/VipsLibrary.h"
#include "imaging/pixels/Pixels.h"

namespace {

const char* const DateField = "exif-ifd2-DateTimeOriginal";
const QString DateFormat = QStringLiteral("yyyy:MM:dd HH:mm:ss");

} // namespace

QDateTime ReadDateTaken(const QString& path)
{
    StartVips();
    try {
        const vips::VImage image = CPictureReader(path).Open(VIPS_FAIL_ON_NONE);
        if (image.get_typeof(DateField) == 0) {
            return QDateTime();
        }
        // "2019:05:01 12:00:00 (2019:05:01 12:00:00, ASCII, 20 components, 20 bytes)"
        const QString text = QString::fromUtf8(image.get_string(DateField));
        return QDateTime::fromString(text.left(DateFormat.size()), DateFormat);
    } catch (const CNoPixelsException&) {
        return QDateTime();
    } catch (const vips::VError& failure) {
        vips_error_clear();
        Trace(QString::fromUtf8(failure.what()));
    } catch (const CExceptionBase& failure) {
        Trace(failure.GetDescription());
    }
    return QDateTime();
}
