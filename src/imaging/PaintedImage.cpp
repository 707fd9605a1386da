#include "imaging/PaintedImage.h"

#include "imaging/ImageNodes.h"

namespace {

class CPaintedNode final : public CDerivedNode {
public:
    CPaintedNode(Parent picture, Painting painting)
        : CDerivedNode(picture->GetSize(), picture), painting(std::move(painting))
    {
        parent->Announce(1);
    }

    CPixels Evaluate(double) const override
    {
        const CImage picture(std::make_shared<const CPixelsNode>(parent->Evaluate(1)));
        CCanvas canvas(GetSize());
        painting(canvas, picture);
        return canvas.TakePixels();
    }

private:
    const Painting painting;
};

} // namespace

CImage Painted(const CImage& picture, Painting painting)
{
    if (picture.GetSize().isEmpty()) {
        return picture;
    }
    return CImage(std::make_shared<const CPaintedNode>(picture.GetNode(), std::move(painting)));
}
