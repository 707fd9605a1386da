#include "TestPictures.h"

#include "effects/ImageEffectSource.h"

namespace {

CImage Painted(QSize size, const std::function<Colour(int, int)>& painter)
{
    QByteArray rgba;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            for (const int value : painter(x, y)) {
                rgba.append(static_cast<char>(value));
            }
        }
    }
    return CImage::FromRgba(size, rgba);
}

} // namespace

CImage Gradient(QSize size)
{
    return Painted(size, [size](int x, int y) {
        return Colour{x * 255 / size.width(), y * 255 / size.height(), 0, 255};
    });
}

CImage Plain(QSize size, const Colour& colour)
{
    return Painted(size, [&colour](int, int) { return colour; });
}

Colour PixelAt(const CImage& image, QPoint place)
{
    const QByteArray rgba = image.GetRgba();
    Colour colour{};
    for (int c = 0; c < 4; ++c) {
        colour[c] = static_cast<uint8_t>(rgba.at((place.y() * image.GetSize().width() + place.x()) * 4 + c));
    }
    return colour;
}

QString Stored(const CScratchFolder& folder, const CImage& image, const QString& name)
{
    const QString path = folder.Path(name);
    const bool isPng = name.endsWith(QStringLiteral(".png"));
    const ImageEncoding encoding{isPng ? ImageEncoding::Format::Png : ImageEncoding::Format::Jpeg, 100};
    EXPECT_EQ(image.Save(path, encoding).status, ImageSaveResult::Status::Saved);
    return path;
}

CImage Applied(const CImageEffect& effect, const CImage& image)
{
    CImageEffectSource source(image);
    effect.Apply(source);
    return source.GetImage();
}
