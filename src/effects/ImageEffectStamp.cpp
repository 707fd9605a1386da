#include "effects/ImageEffectStamp.h"

#include <algorithm>

#include "effects/FileNames.h"
#include "effects/ImageEffectSource.h"
#include "imaging/Canvas.h"

namespace {

enum PositionBit { LeftBit = 1, RightBit = 2, TopBit = 4, BottomBit = 8 };

struct Axis {
    int picture;
    int stamp;
    bool atStart;
    bool atEnd;
};

// Left and top win over right and bottom. Margins come unchecked from project files.
int PlaceOnAxis(const Axis& axis, int margin)
{
    constexpr int64_t farAway = 1'000'000'000;
    int64_t place = margin;
    if (!axis.atStart) {
        const int64_t room = int64_t{axis.picture} - axis.stamp;
        // The half is truncated toward zero, for a stamp larger than its picture too.
        place = axis.atEnd ? room - margin - 1 : (room - 1) / 2;
    }
    return static_cast<int>(std::clamp(place, -farAway, farAway));
}

} // namespace

CImageEffectStamp::CImageEffectStamp(const QString& kind, const QString& named)
    : nameKey(kind + QString::number(CharSum(named)))
{}

QString CImageEffectStamp::GetResultFileName(const QString& fileName) const
{
    constexpr int radix = 32;
    const CStampParams params = GetStampParams();
    return WithSuffix(fileName, nameKey + QString::number(params.position, radix) +
                                    QString::number(params.margin, radix));
}

void CImageEffectStamp::Apply(CImageEffectSource& source) const
{
    const auto paint = [stamp = Copy()](CCanvas& canvas, const CImage& picture) {
        canvas.DrawImage(picture, QPoint(0, 0), 1);
        stamp->DrawStamp(canvas, stamp->GetStampRect(canvas));
    };
    source.ReplaceImage(Painted(source.GetImage(), paint));
}

QRect CImageEffectStamp::GetStampRect(const CCanvas& canvas) const
{
    const CStampParams params = GetStampParams();
    const QSize picture = canvas.GetSize();
    const QSize stamp = GetStampSize(canvas);
    const int x = PlaceOnAxis({.picture = picture.width(),
                               .stamp = stamp.width(),
                               .atStart = (params.position & LeftBit) != 0,
                               .atEnd = (params.position & RightBit) != 0},
                              params.margin);
    const int y = PlaceOnAxis({.picture = picture.height(),
                               .stamp = stamp.height(),
                               .atStart = (params.position & TopBit) != 0,
                               .atEnd = (params.position & BottomBit) != 0},
                              params.margin);
    return {QPoint(x, y), stamp + QSize(1, 1)};
}

uint32_t CharSum(const QString& text)
{
    uint32_t sum = 0;
    for (const QChar unit : text) {
        sum += unit.unicode();
    }
    return sum;
}
