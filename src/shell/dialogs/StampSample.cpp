#include "shell/dialogs/StampSample.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>

#include "effects/ImageEffectSource.h"
#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr QRgb Background = 0xFFA9A9A9;

// A picture that isn't there, or couldn't be made, has no pixels.
QImage ToQImage(const CImage& image)
{
    const QByteArray bytes = image.GetRgba();
    const QSize size = image.GetSize();
    if (bytes.isEmpty()) {
        return {};
    }
    const QImage view(reinterpret_cast<const uchar*>(bytes.constData()), size.width(), size.height(),
                      size.width() * 4, QImage::Format_RGBA8888);
    return view.copy();
}

} // namespace

CStampSample::CStampSample(QWidget* parent) : QLabel(parent)
{
    NameControl(*this, "sample", Text(StringId::SampleLabel));
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setFixedSize(300, 240);
    setAlignment(Qt::AlignCenter);
}

void CStampSample::ShowStamp(const std::function<void(CImageEffectSource&)>& applyStamp)
{
    const QSize size = contentsRect().size() - QSize(1, 1);
    CImageEffectSource source(size);
    applyStamp(source);
    QImage shown(size, QImage::Format_ARGB32_Premultiplied);
    shown.fill(Background);
    QPainter painter(&shown);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.drawImage(0, 0, ToQImage(source.GetImage()));
    painter.end();
    setPixmap(QPixmap::fromImage(shown));
}
