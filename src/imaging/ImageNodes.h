#pragma once

#include <memory>

#include <QRect>

#include "imaging/ImageNode.h"

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
