#include "effects/ImageEffectPhotoFrame.h"

#include <algorithm>

#include "effects/FileNames.h"
#include "effects/ImageEffectSource.h"
#include "imaging/Canvas.h"

namespace {

constexpr CanvasColour paper{0xf5, 0xf5, 0xf5, 255};
constexpr CanvasColour outline{0x80, 0x80, 0x80, 255};

// Larger than any picture, and such that no sum of a few overflows.
constexpr int farAway = 1'000'000;

} // namespace

CImageEffectPhotoFrame::CImageEffectPhotoFrame(int frameWidth, int shadowOffset, int shadowOpacity)
    : frameWidth(std::clamp(frameWidth, -farAway, farAway)),
      shadowOffset(std::clamp(shadowOffset, -farAway, farAway)),
      shadowOpacity(std::clamp(shadowOpacity, 0, 100))
{}

QString CImageEffectPhotoFrame::GetResultFileName(const QString& fileName) const
{
    return WithSuffix(fileName, QStringLiteral("f"));
}

void CImageEffectPhotoFrame::Apply(CImageEffectSource& source) const
{
    const CanvasColour shadow{0, 0, 0, static_cast<uint8_t>(shadowOpacity * 255 / 100)};
    const QPoint shadowPlace(shadowOffset, shadowOffset);
    const auto paint = [shadow, shadowPlace, border = frameWidth](CCanvas& canvas, const CImage& picture) {
        const QSize faceSize = canvas.GetSize() - QSize(shadowPlace.x(), shadowPlace.y());
        const QRect face(QPoint(0, 0), faceSize);
        canvas.FillRectangle(QRect(shadowPlace, faceSize), shadow);
        canvas.FillRectangle(face, paper);
        // Odd on purpose: measured like the face, so that its right and bottom lines lie one pixel outside.
        canvas.DrawRectangle(face, outline);
        canvas.DrawImage(picture, face.adjusted(border, border, -border, -border));
    };
    source.ReplaceImage(Painted(source.GetImage(), paint));
}
