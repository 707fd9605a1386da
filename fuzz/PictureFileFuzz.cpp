#include <algorithm>
#include <array>

#include <QFile>
#include <QTemporaryDir>

#include "Check.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "effects/FileNames.h"
#include "effects/GeometricEffects.h"
#include "effects/ImageEffect.h"
#include "effects/ImageEffectSource.h"
#include "imaging/pixels/Pixels.h"

namespace {

// The work grows with the pixels.
constexpr int MostPixels = 500'000;

const char* const Extensions[] = {"jpg", "png", "gif", "bmp", "pcx", "webp", "tif", "svg"};

// What is made of a picture, as a deployment does it.
struct Wish {
    QString extension; // of the picture file; nothing in the file has to agree with it
    QSize box;
    bool crop = false;
    int turns = 0;
};

// Bits 0 to 2 of the byte: the extension; 3 and 4: the box; 5: cropped; 6 and 7: the turns.
Wish WishOf(uint8_t choice)
{
    constexpr std::array<QSize, 4> boxes{QSize(1000, 1000), QSize(4, 4), QSize(7, 3), QSize(1, 1)};
    return {.extension = QLatin1String(Extensions[choice % 8]),
            .box = boxes[choice / 8 % 4],
            .crop = choice / 32 % 2 != 0,
            .turns = choice / 64};
}

CImageEffectCompound ChainFor(const Wish& wish)
{
    CImageEffectCompound chain;
    chain.Add(std::make_shared<CImageEffectRename>());
    if (wish.turns != 0) {
        chain.Add(std::make_shared<CImageEffectRotate>(wish.turns));
    }
    chain.Add(std::make_shared<CImageEffectResize>(
        wish.box, CImageEffectResize::Options{.shrinkOnly = true, .crop = wish.crop}));
    return chain;
}

bool HasPixels(const CImage& image)
{
    return image.GetCondition().state != ImageCondition::State::NotDecodable;
}

void CheckCondition(const CImage& image)
{
    const ImageCondition condition = image.GetCondition();
    Check((condition.state == ImageCondition::State::Whole) == condition.reason.isEmpty(),
          "what is not whole has a reason");
}

size_t NumberAt(const QByteArray& bytes, qsizetype place, int size)
{
    size_t number = 0;
    for (const char byte : bytes.mid(place, size)) {
        number = number * 256 + static_cast<uint8_t>(byte);
    }
    return number;
}

// The marks of a JPEG's segments in front of its pixels (ITU T.81, B.1.1.4), or the types of a PNG's chunks
// (PNG 1.2, 3.2).
QByteArrayList PartsOf(const QByteArray& bytes)
{
    QByteArrayList parts;
    const bool isJpeg = bytes.startsWith("\xff\xd8");
    qsizetype place = isJpeg ? 2 : 8;
    while (place + 8 <= bytes.size()) {
        parts += isJpeg ? bytes.mid(place, 2) : bytes.mid(place + 4, 4);
        if (parts.back() == "\xff\xda") {
            break;
        }
        place += static_cast<qsizetype>(isJpeg ? 2 + NumberAt(bytes, place + 2, 2)
                                               : 12 + NumberAt(bytes, place, 4));
    }
    return parts;
}

// Nothing of the source but its pixels is published.
void CheckResult(const QString& path, QSize size)
{
    const CImage result = CImage::FromFile(path);
    Check(result.GetSize() == size, "a saved picture has its size");
    Check(result.GetRgba().size() == qsizetype{4} * size.width() * size.height(),
          "a saved picture can be opened");
    Check(result.GetCondition().state == ImageCondition::State::Whole, "a saved picture is whole");
    const QByteArrayList parts = PartsOf(ReadWholeFile(path));
    Check(parts.contains("IDAT") || parts.contains("\xff\xda"), "a saved picture is a JPEG or a PNG");
    for (const char* const kind :
         {"\xff\xe1", "\xff\xe2", "\xff\xed", "\xff\xfe", "eXIf", "iCCP", "iTXt", "tEXt", "zTXt", "tIME"}) {
        Check(!parts.contains(kind), "a saved picture carries no metadata");
    }
}

// False if the picture has no pixels.
bool Save(const CImageEffectSource& source, const QString& path)
{
    try {
        source.Save(path);
    } catch (const CUnexpectedException& failure) {
        Check(!failure.GetCaption().isEmpty() && !failure.GetDescription().isEmpty(),
              "a failure says what happened, and why");
        Check(!HasPixels(source.GetImage()), "only a picture without pixels can't be saved");
        Check(!FileExists(path), "a failure leaves no file");
        return false;
    }
    Check(HasPixels(source.GetImage()), "without pixels nothing is saved");
    CheckResult(path, source.GetImage().GetSize());
    return true;
}

// The same pixels come if the picture is decoded as a whole. In much smaller ones the decoder has scaled.
void CheckWhole(const QString& path, const CImage& saved, const CImageEffectCompound& chain)
{
    const CImage picture = CImage::FromFile(path);
    picture.AnnounceFullSize();
    CImageEffectSource source(picture, path);
    chain.Apply(source);
    Check(source.GetImage().GetSize() == saved.GetSize(), "a size is known before any pixel");
    const int largest = std::max(picture.GetSize().width(), picture.GetSize().height());
    const bool isSameScale = std::min(saved.GetSize().width(), saved.GetSize().height()) * 5 > largest;
    Check(!isSameScale || source.GetImage().GetRgba() == saved.GetRgba(), "all ways give the same pixels");
}

} // namespace

// Bytes of a picture file, and a last one that says what is made of it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    if (size == 0) {
        return 0;
    }
    static const QTemporaryDir folder;
    const Wish wish = WishOf(bytes[size - 1]);
    const QString path = folder.filePath(QStringLiteral("picture.") + wish.extension);
    const QByteArray picture(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size - 1));
    Check(ReplaceFile(path, picture, Durability::Plain) == 0, "the folder can be written to");

    CImageEffectSource source(path);
    const QSize fileSize = source.GetImage().GetSize();
    CheckCondition(source.GetImage());
    Check(HasPixels(source.GetImage()) != fileSize.isEmpty(), "only what is no picture has no size");
    const int64_t pixels = int64_t{fileSize.width()} * fileSize.height();
    Check(pixels <= maximumPixels, "a picture of absurd size is none");
    if (pixels > MostPixels) {
        QFile::remove(path);
        return 0;
    }
    const CImageEffectCompound chain = ChainFor(wish);
    const QString resultPath =
        chain.GetResultFileName(folder.filePath(QStringLiteral("result.") + wish.extension));
    chain.Apply(source);
    if (Save(source, resultPath)) {
        CheckWhole(path, source.GetImage(), chain);
    }
    CheckCondition(source.GetImage());
    QFile::remove(resultPath);
    QFile::remove(path);
    return 0;
}
