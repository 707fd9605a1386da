#include "effects/ImageTransform.h"

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "effects/EffectGeometry.h"
#include "effects/FileNames.h"
#include "effects/ImageEffectSource.h"

namespace {

constexpr int defaultQuality = 75;

} // namespace

QString ResizeImageFile(const QString& source, const QString& destinationPath,
                        const ResizeFileOptions& options)
{
    const FileNameParts destination = SplitFileName(destinationPath);
    const EncoderChoice encoder = GetEncoderForExtension(destination.extension.mid(1));
    const ImageEncoding::Format format = RequireEncoder(encoder.encoderName);
    CImage image = CImage::FromFile(source);
    QString base = destination.base;
    if (!FitsInto(image.GetSize(), options.box)) {
        image = image.Resampled(options.box);
        base += QStringLiteral("_%1_%2").arg(options.box.width()).arg(options.box.height());
    }
    const QString resultPath = base + encoder.resultExtension;
    if (FileExists(resultPath) && !options.overwrite) {
        return resultPath;
    }
    const ImageSaveResult result = image.Save(resultPath, {.format = format, .quality = defaultQuality});
    if (result.status != ImageSaveResult::Status::Saved) {
        ThrowImageNotSaved(resultPath, source, result);
    }
    return resultPath;
}

QString RotateImageFile(const QString& path, int angle)
{
    const FileNameParts name = SplitFileName(path);
    const EncoderChoice encoder = GetEncoderForExtension(name.extension.mid(1));
    const QString resultPath =
        name.base + QStringLiteral("_rotated_") + QString::number(angle) + encoder.resultExtension;
    if (FileExists(resultPath)) {
        return resultPath;
    }
    const std::optional<ImageEncoding::Format> format = GetEncoderClsid(encoder.encoderName);
    const bool saved = format && CImage::FromFile(path)
                                         .Rotated(angle)
                                         .Save(resultPath, {.format = *format, .quality = defaultQuality})
                                         .status == ImageSaveResult::Status::Saved;
    return saved ? resultPath : path;
}
