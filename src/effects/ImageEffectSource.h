#pragma once

#include <QSize>
#include <QString>

#include "imaging/Image.h"

// The picture under work: effects replace it step by step, then it is saved. Lives for one chain on one
// thread's stack. Pictures are computed at Save only.
class CImageEffectSource {
public:
    // A file that can't be read is no error before Save.
    explicit CImageEffectSource(const QString& path);

    // For several chains over one file: image comes from CImage::FromFile(sourcePath), which is then decoded
    // once if all chains are applied before the first is saved.
    CImageEffectSource(const CImage& image, const QString& sourcePath);

    // Without a source path.
    explicit CImageEffectSource(const CImage& image);

    // A canvas of white at alpha 0.
    explicit CImageEffectSource(QSize size);

    const CImage& GetImage() const { return image; }
    void ReplaceImage(const CImage& newImage) { image = newImage; }

    // Leaves no picture.
    CImage DetachImage();

    // Writes a JPEG of quality 100, or a PNG if path ends in ".png", ".gif" or ".bmp". A path that differs
    // from the source's in case at most is not written. Throws CUnexpectedException, which names the
    // path and the reason. Whether the picture was whole tells GetImage().GetCondition() afterwards.
    void Save(const QString& path) const;

private:
    CImage image;
    QString sourcePath; // empty if there is none
};

// The failure of a picture that could not be written to path. sourcePath may be empty.
[[noreturn]] void ThrowImageNotSaved(const QString& path, const QString& sourcePath,
                                     const ImageSaveResult& result);
