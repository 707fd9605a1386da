#include "imaging/SvgImage.h"

#include <vips/vips8>

#include "imaging/Canvas.h"
#include "imaging/ImageNodes.h"
#include "imaging/codecs/VipsLibrary.h"

CImage RenderSvg(const QByteArray& svg, double scale)
{
    StartVips();
    if (svg.isEmpty()) {
        return {};
    }
    try {
        const vips::VImage image =
            vips::VImage::new_from_buffer(svg.constData(), static_cast<size_t>(svg.size()), "",
                                          vips::VImage::option()->set("scale", scale));
        size_t length = 0;
        void* const bytes = image.write_to_memory(&length);
        const QByteArray rgba(static_cast<const char*>(bytes), static_cast<qsizetype>(length));
        g_free(bytes);
        return CImage::FromRgba(QSize(image.width(), image.height()), rgba);
    } catch (const vips::VError&) {
        vips_error_clear();
        return {};
    }
}

CImage SideBySide(const std::vector<CImage>& pictures)
{
    QSize size(0, 0);
    for (const CImage& picture : pictures) {
        size.rwidth() += picture.GetSize().width();
        size.setHeight(size.height() == 0 ? picture.GetSize().height() : size.height());
    }
    if (!IsComputable(size)) {
        return {};
    }
    CCanvas canvas(size);
    QPoint place;
    for (const CImage& picture : pictures) {
        canvas.DrawImage(picture, place, 1.0);
        place.rx() += picture.GetSize().width();
    }
    return CImage(std::make_shared<const CPixelsNode>(canvas.TakePixels()));
}
