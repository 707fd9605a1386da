#pragma once

#include <memory>

#include <QRect>
#include <QSize>

#include "imaging/pixels/Pixels.h"
#include "imaging/pixels/Resampler.h"

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

// The images that are not files. Each holds the image that it was derived from.

// Pixels that are there already.
class CPixelsNode final : public CImageNode {
public:
    explicit CPixelsNode(const CPixels& pixels) : CImageNode(pixels.size), pixels(pixels) {}

    CPixels Evaluate(double) const override { return pixels; }
    void Announce(double) const override {}
    ImageCondition GetCondition() const override { return {}; }

private:
    const CPixels pixels;
};

// A canvas of white at alpha 0.
class CBlankNode final : public CImageNode {
public:
    explicit CBlankNode(QSize size) : CImageNode(size) {}

    CPixels Evaluate(double) const override;
    void Announce(double) const override {}
    ImageCondition GetCondition() const override { return {}; }
};

// An image with a parent whose condition is its own.
class CDerivedNode : public CImageNode {
public:
    using Parent = std::shared_ptr<const CImageNode>;

    CDerivedNode(QSize size, Parent parent) : CImageNode(size), parent(std::move(parent)) {}

    void Announce(double) const override {}
    ImageCondition GetCondition() const override { return parent->GetCondition(); }

protected:
    const Parent parent; // not null
};

class CResampledNode final : public CDerivedNode {
public:
    // scaled: the size of the whole picture. area: what of it is the result; may reach beyond it.
    CResampledNode(Parent parent, QSize scaled, const QRect& area);

    CPixels Evaluate(double) const override;

private:
    const QRect area;
    const Resampling resampling; // of what the parent has of the area
};

// An image on the middle of an opaque card.
class CCardNode final : public CDerivedNode {
public:
    CCardNode(Parent picture, QSize card) : CDerivedNode(card, std::move(picture)) {}

    CPixels Evaluate(double) const override;
};

class CRotatedNode final : public CDerivedNode {
public:
    // quarterTurns: clockwise, 1 to 3.
    CRotatedNode(Parent parent, int quarterTurns);

    CPixels Evaluate(double scale) const override;
    void Announce(double scale) const override { parent->Announce(scale); }

private:
    const int orientation; // that the turn undoes, as in EXIF
};

// What has a size that can't be drawn, such as a width of 0.
class CImpossibleNode final : public CDerivedNode {
public:
    CImpossibleNode(Parent parent, QSize wanted);

    CPixels Evaluate(double) const override;
    ImageCondition GetCondition() const override;

private:
    const QSize wanted;
};
