#pragma once

#include <QSize>
#include <QString>

#include "imaging/Image.h"
#include "imaging/Pixels.h"
#include "imaging/Resampling.h"

// Thrown by Evaluate: there are no pixels. Doesn't leave this folder.
struct CNoPixelsException {
    QString reason;
};

// How one image comes about: from a file, or from another image. Immutable to its users and shared by all
// images that were derived from it; all operations may be called by several threads at once.
class CImageNode {
public:
    explicit CImageNode(QSize size) : size(size) {}
    virtual ~CImageNode() = default;
    CImageNode(const CImageNode&) = delete;
    CImageNode& operator=(const CImageNode&) = delete;

    QSize GetSize() const { return size; }

    // The pixels at GetSize() times scale or anything larger; 1 asks for the full size and gets exactly it.
    // Throws CNoPixelsException.
    virtual CPixels Evaluate(double scale) const = 0;

    // Foretells an Evaluate, so that a file isn't decoded too small at first.
    virtual void Announce(double scale) const = 0;

    // The same for a scaled picture: its area alone. A file can be scaled while it is decoded.
    virtual CPixels EvaluateResampled(const Resampling& resampling) const;
    virtual void AnnounceResampled(const Resampling& resampling) const { Announce(resampling.scale); }

    virtual ImageCondition GetCondition() const = 0;

private:
    const QSize size;
};
