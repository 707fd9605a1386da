#pragma once

#include <memory>

#include <QByteArray>
#include <QSize>
#include <QString>

#include "imaging/codecs/ImageEncoder.h"
#include "imaging/pixels/Pixels.h"

class CImageNode;

struct ImageSaveResult {
    enum class Status { Saved, NoPixels, NotWritten };
    Status status = Status::Saved;
    QString reason; // for people: of the decoder, or the system's own; empty when saved
};

// A picture as a value: 8-bit sRGB, with or without alpha, upright. Cheap to copy; never changed once made,
// so that several threads may use one image and its copies. The size is known at once; pixels are computed
// only when they are asked for. A file is decoded once for all images that were derived from one FromFile, at
// the smallest scale that serves the largest of them: derive all images first, then save them.
class CImage {
public:
    // No picture: 0 by 0.
    CImage();

    // Reads the header only. A file that can't be read is an image of 0 by 0, not decodable.
    static CImage FromFile(const QString& path);

    // White at alpha 0.
    static CImage Blank(QSize size);

    // bytes: red, green, blue, alpha (not premultiplied) for each pixel, row by row from the top.
    // Too few bytes for the size give an image of 0 by 0.
    static CImage FromRgba(QSize size, const QByteArray& bytes);

    // For kinds of images that other files of this folder compute.
    explicit CImage(std::shared_ptr<const CImageNode> node);
    const std::shared_ptr<const CImageNode>& GetNode() const { return node; }

    // In pixels, by the picture's own orientation tag (EXIF, tag 0x0112).
    QSize GetSize() const;

    // Whether this is a copy of other, and not merely a picture of the same pixels.
    bool IsSameAs(const CImage& other) const { return node == other.node; }

    // Decoding finds out the final answer, so ask again after Save or GetRgba.
    ImageCondition GetCondition() const;

    // An empty or negative size is an image without pixels.
    CImage Resampled(QSize size) const;

    // Scaled to size, then cut to the box around its middle: (box - size) / 2, truncated toward zero, is the
    // offset. What the picture doesn't cover is transparent.
    CImage ResampledAndCropped(QSize size, QSize box) const;

    // Scaled to size and laid on the middle of an opaque card of grey 207. No picture gives no card.
    CImage OnCard(QSize size, QSize card) const;

    // Any number; 4 is a full turn, -1 a turn to the left.
    CImage Rotated(int quarterTurnsClockwise) const;

    // Says that the pixels will be asked for as they are, unscaled, so that a file isn't decoded once for a
    // smaller size and then once more. For callers that save a picture which they didn't scale.
    void AnnounceFullSize() const;

    // Bytes as for FromRgba; empty if there are no pixels.
    QByteArray GetRgba() const;

    // Written under another name and then renamed: a failure leaves what was there before.
    ImageSaveResult Save(const QString& path, const ImageEncoding& encoding) const;

private:
    std::shared_ptr<const CImageNode> node; // not null
};
