#pragma once

#include <optional>

#include "common/FileIdentity.h"
#include "effects/ImageEffectStamp.h"
#include "imaging/Image.h"

// A watermark: a picture laid unscaled over another one. Also the tiles of a gallery's cover. The picture is
// decoded once for all that it is laid over.
class CImageEffectGraphicsStamp final : public CImageEffectStamp {
public:
    // A file that can't be read draws nothing.
    explicit CImageEffectGraphicsStamp(const CImageStampParams& params);
    // An opaque stamp of a picture that is there already. path: serves the name only.
    CImageEffectGraphicsStamp(const QString& path, const CImage& image, const CStampParams& place);

    // What has been applied so far keeps its stamp. Not to be called while other threads use this object.
    void SetImage(const CImage& newImage)
    {
        image = newImage;
        file.reset();
    }

    // "a.jpg" gives "a", "g", the sum of the path's characters, position, margin, "s", transparency, ".jpg".
    QString GetResultFileName(const QString& fileName) const override;
    // Null for a stamp of a picture that is there already.
    QString GetKey() const override;

    CStampParams GetStampParams() const override { return static_cast<const CStampParams&>(params); }
    QSize GetStampSize(const CCanvas& canvas) const override;
    void DrawStamp(CCanvas& canvas, const QRect& rectangle) const override;

protected:
    std::shared_ptr<const CImageEffectStamp> Copy() const override;

private:
    CImage image;
    const CImageStampParams params;
    std::optional<FileIdentity> file; // at construction; none for a picture that was there already
};
