#include "document/cover/CoverComposition.h"

#include <algorithm>

#include "common/FileSystem.h"
#include "effects/FileNames.h"
#include "effects/GeometricEffects.h"
#include "effects/ImageEffect.h"
#include "effects/ImageEffectGraphicsStamp.h"
#include "effects/ImageEffectPhotoFrame.h"
#include "effects/ImageEffectSource.h"
#include "resources/Resources.h"

namespace {

constexpr QSize coverSize(800, 600);

struct Tiles {
    QSize size;
    std::vector<int32_t> positions; // of stamps
};

// A stamp at the right or at the bottom ends one pixel before the edge, so that 11 pixels lie between tiles.
const Tiles& TilesFor(size_t count)
{
    static const Tiles two{{394, 600}, {1, 2}};
    static const Tiles four{{394, 294}, {5, 6, 9, 10}};
    return count == 2 ? two : four;
}

void AddRotation(CImageEffectCompound& chain, int32_t angle)
{
    if (angle != 0) {
        chain.Add(std::make_shared<CImageEffectRotate>(angle));
    }
}

CImageEffectCompound FinalChain(int32_t angle)
{
    CImageEffectCompound chain;
    chain.Add(std::make_shared<CImageEffectRename>());
    AddRotation(chain, angle);
    chain.Add(std::make_shared<CImageEffectResize>(
        coverSize, CImageEffectResize::Options{.shrinkOnly = true, .crop = false}));
    chain.Add(std::make_shared<CImageEffectPhotoFrame>(12, 5, 75));
    return chain;
}

CImage TileOf(const CoverPicture& picture, const CImage& opened, QSize size)
{
    CImageEffectCompound chain;
    AddRotation(chain, picture.angle);
    chain.Add(std::make_shared<CImageEffectResize>(
        size, CImageEffectResize::Options{.shrinkOnly = false, .crop = true}));
    CImageEffectSource source(opened);
    chain.Apply(source);
    return source.DetachImage();
}

// opened: one for each picture; empty where only names matter.
CImageEffectCompound TileStamps(const std::vector<CoverPicture>& pictures, const std::vector<CImage>& opened)
{
    const Tiles& tiles = TilesFor(pictures.size());
    CImageEffectCompound stamps;
    for (size_t i = 0; i < pictures.size(); ++i) {
        const CImage tile = opened.empty() ? CImage() : TileOf(pictures[i], opened[i], tiles.size);
        stamps.Add(std::make_shared<CImageEffectGraphicsStamp>(
            pictures[i].namedBy, tile, CStampParams{.position = tiles.positions[i], .margin = 0}));
    }
    return stamps;
}

CImage Composed(const std::vector<CoverPicture>& pictures, const std::vector<CImage>& opened)
{
    CImageEffectSource canvas(coverSize);
    TileStamps(pictures, opened).Apply(canvas);
    return canvas.DetachImage();
}

// Of pictures that have been decoded.
CoverState StateOf(const std::vector<CImage>& opened)
{
    using State = ImageCondition::State;
    const auto is = [](State state) {
        return [state](const CImage& image) {
            return image.GetCondition().state == state;
        };
    };
    if (std::all_of(opened.begin(), opened.end(), is(State::Whole))) {
        return CoverState::Whole;
    }
    return std::all_of(opened.begin(), opened.end(), is(State::NotDecodable)) ? CoverState::Nothing
                                                                              : CoverState::InPart;
}

// False if there are no pixels.
bool Save(const CImage& image, const QString& path)
{
    const ImageSaveResult result = image.Save(path, {.format = FormatForPath(path), .quality = 100});
    if (result.status == ImageSaveResult::Status::NotWritten) {
        ThrowImageNotSaved(path, QString(), result);
    }
    return result.status == ImageSaveResult::Status::Saved;
}

// If none of the pictures can be read the file means nothing.
CoverState SaveComposed(const QString& path, const std::vector<CoverPicture>& pictures)
{
    std::vector<CImage> opened;
    for (const CoverPicture& picture : pictures) {
        opened.push_back(CImage::FromFile(picture.path));
    }
    const bool isSingle = pictures.size() == 1;
    CImageEffectSource source(isSingle ? opened[0] : Composed(pictures, opened));
    FinalChain(isSingle ? pictures[0].angle : 0).Apply(source);
    // Decoding finds out which of them are readable.
    return Save(source.GetImage(), path) ? StateOf(opened) : CoverState::Nothing;
}

// In the format of path's extension.
void SaveEmptyCover(const QString& path)
{
    const QByteArray empty = FindResource(QStringLiteral("new_gallery"), QStringLiteral("png"));
    if (path.endsWith(QStringLiteral(".png"))) {
        WriteFileAtomically(path, empty);
        return;
    }
    const QString original = path + QStringLiteral(".png");
    WriteFileAtomically(original, empty);
    Save(CImage::FromFile(original), path);
}

} // namespace

int32_t CountOfCoverPictures(int32_t pictureCount)
{
    return pictureCount >= 4 ? 4 : std::min(pictureCount, 2);
}

QString CoverFileName(int32_t galleryIndex, const std::vector<CoverPicture>& pictures)
{
    const QString plain = QStringLiteral("vsm%1.png").arg(galleryIndex);
    if (pictures.empty()) {
        return plain;
    }
    const bool isSingle = pictures.size() == 1;
    const QString name =
        isSingle ? ExtractLastName(pictures[0].path) : TileStamps(pictures, {}).GetResultFileName(plain);
    return WithSuffix(FinalChain(isSingle ? pictures[0].angle : 0).GetResultFileName(name),
                      QStringLiteral("_%1").arg(galleryIndex));
}

CoverState SaveCover(const QString& path, const std::vector<CoverPicture>& pictures)
{
    const CoverState state = pictures.empty() ? CoverState::Nothing : SaveComposed(path, pictures);
    if (state == CoverState::Nothing) {
        SaveEmptyCover(path);
    }
    return state;
}
