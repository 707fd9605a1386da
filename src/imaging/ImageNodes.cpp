#include "imaging/ImageNodes.h"

#include <algorithm>

#include "resources/StringTable.h"

namespace {

constexpr uint8_t cardGrey = 207;

int OrientationOfTurn(int quarterTurns)
{
    constexpr int orientations[] = {1, 6, 3, 8};
    return orientations[quarterTurns];
}

double NeededScale(QSize full, QSize scaled)
{
    return std::max(static_cast<double>(scaled.width()) / full.width(),
                    static_cast<double>(scaled.height()) / full.height());
}

} // namespace

CPixels CImageNode::EvaluateResampled(const Resampling& resampling) const
{
    return Resample(Evaluate(resampling.scale), resampling);
}

CPixels CBlankNode::Evaluate(double) const
{
    std::vector<uint8_t> bytes(static_cast<size_t>(GetSize().width()) * GetSize().height() * 4, 255);
    for (size_t alpha = 3; alpha < bytes.size(); alpha += 4) {
        bytes[alpha] = 0;
    }
    return MakePixels(GetSize(), 4, std::move(bytes));
}

CResampledNode::CResampledNode(Parent parent, QSize scaled, const QRect& area)
    : CDerivedNode(area.size(), std::move(parent)),
      area(area),
      resampling{scaled, area.intersected(QRect(QPoint(0, 0), scaled)),
                 NeededScale(this->parent->GetSize(), scaled)}
{
    this->parent->AnnounceResampled(resampling);
}

CPixels CResampledNode::Evaluate(double) const
{
    return Cut(parent->EvaluateResampled(resampling), area.translated(-resampling.area.topLeft()));
}

CPixels CCardNode::Evaluate(double) const
{
    const CPixels picture = Flattened(parent->Evaluate(1), cardGrey);
    std::vector<uint8_t> bytes(static_cast<size_t>(GetSize().width()) * GetSize().height() * 3, cardGrey);
    const QRect place(CentredOffset(GetSize(), picture.size), picture.size);
    const QRect visible = place.intersected(QRect(QPoint(0, 0), GetSize()));
    for (int y = visible.top(); y <= visible.bottom(); ++y) {
        const uint8_t* source = picture.GetRow(y - place.top()) + (visible.left() - place.left()) * 3;
        std::copy_n(source, visible.width() * 3,
                    &bytes[(static_cast<size_t>(y) * GetSize().width() + visible.left()) * 3]);
    }
    return MakePixels(GetSize(), 3, std::move(bytes));
}

CRotatedNode::CRotatedNode(Parent parent, int quarterTurns)
    : CDerivedNode(quarterTurns % 2 == 0 ? parent->GetSize() : parent->GetSize().transposed(), parent),
      orientation(OrientationOfTurn(quarterTurns))
{}

CPixels CRotatedNode::Evaluate(double scale) const
{
    return Upright(parent->Evaluate(scale), orientation);
}

CImpossibleNode::CImpossibleNode(Parent parent, QSize wanted)
    : CDerivedNode(wanted.expandedTo(QSize(0, 0)), std::move(parent)), wanted(wanted)
{}

CPixels CImpossibleNode::Evaluate(double) const
{
    throw CNoPixelsException{GetCondition().reason};
}

ImageCondition CImpossibleNode::GetCondition() const
{
    const ImageCondition inherited = parent->GetCondition();
    if (inherited.state == ImageCondition::State::NotDecodable) {
        return inherited;
    }
    return {ImageCondition::State::NotDecodable,
            Text(StringId::ImageSizeImpossible, wanted.width(), wanted.height())};
}
