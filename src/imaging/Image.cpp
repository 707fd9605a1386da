#include "imaging/Image.h"

#include <new>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "imaging/ImageFile.h"
#include "imaging/ImageNodes.h"
#include "resources/StringTable.h"

namespace {

std::shared_ptr<const CImageNode> NoPicture()
{
    static const auto node = std::make_shared<const CUnreadableFile>(Text(StringId::ImageEmpty));
    return node;
}

QString TooLarge(QSize size)
{
    return Text(StringId::ImageTooLarge, size.width(), size.height());
}

} // namespace

CImage::CImage() : node(NoPicture()) {}

CImage::CImage(std::shared_ptr<const CImageNode> node) : node(std::move(node)) {}

CImage CImage::FromFile(const QString& path)
{
    try {
        return CImage(std::make_shared<const CImageFile>(path, ReadImageHeader(path)));
    } catch (const CNoPixelsException& failure) {
        return CImage(std::make_shared<const CUnreadableFile>(failure.reason));
    }
}

CImage CImage::Blank(QSize size)
{
    if (!IsComputable(size)) {
        return CImage(
            std::make_shared<const CImpossibleNode>(std::make_shared<const CBlankNode>(QSize(1, 1)), size));
    }
    return CImage(std::make_shared<const CBlankNode>(size));
}

CImage CImage::FromRgba(QSize size, const QByteArray& bytes)
{
    if (!IsComputable(size) || bytes.size() < qsizetype(4) * size.width() * size.height()) {
        return {};
    }
    const std::vector<uint8_t> copy(bytes.begin(),
                                    bytes.begin() + qsizetype(4) * size.width() * size.height());
    return CImage(std::make_shared<const CPixelsNode>(MakePixels(size, 4, copy)));
}

QSize CImage::GetSize() const
{
    return node->GetSize();
}

ImageCondition CImage::GetCondition() const
{
    return node->GetCondition();
}

CImage CImage::Resampled(QSize size) const
{
    return ResampledAndCropped(size, size);
}

CImage CImage::ResampledAndCropped(QSize size, QSize box) const
{
    if (GetSize().isEmpty() || !IsComputable(box) || size.isEmpty()) {
        return CImage(std::make_shared<const CImpossibleNode>(node, box));
    }
    return CImage(std::make_shared<const CResampledNode>(node, size, QRect(-CentredOffset(box, size), box)));
}

CImage CImage::OnCard(QSize size, QSize card) const
{
    const CImage picture = Resampled(size);
    if (picture.GetCondition().state == ImageCondition::State::NotDecodable) {
        return picture;
    }
    if (!IsComputable(card)) {
        return CImage(std::make_shared<const CImpossibleNode>(node, card));
    }
    return CImage(std::make_shared<const CCardNode>(picture.node, card));
}

CImage CImage::Rotated(int quarterTurnsClockwise) const
{
    const int turns = (quarterTurnsClockwise % 4 + 4) % 4;
    return turns == 0 ? *this : CImage(std::make_shared<const CRotatedNode>(node, turns));
}

void CImage::AnnounceFullSize() const
{
    node->Announce(1);
}

QByteArray CImage::GetRgba() const
{
    try {
        const CPixels pixels = WithAlpha(node->Evaluate(1));
        return QByteArray(reinterpret_cast<const char*>(pixels.bytes->data()),
                          static_cast<qsizetype>(pixels.bytes->size()));
    } catch (const CNoPixelsException&) {
        return {};
    } catch (const std::bad_alloc&) {
        return {};
    }
}

ImageSaveResult CImage::Save(const QString& path, const ImageEncoding& encoding) const
{
    try {
        const QByteArray bytes = EncodeImage(node->Evaluate(1), encoding);
        // Not synced: a picture can be made again, and waiting for the disk at each would double the time.
        const int error = ReplaceFile(path, bytes, Durability::Plain);
        if (error != 0) {
            return {ImageSaveResult::Status::NotWritten, SystemErrorText(error)};
        }
    } catch (const CNoPixelsException& failure) {
        return {ImageSaveResult::Status::NoPixels, failure.reason};
    } catch (const std::bad_alloc&) {
        return {ImageSaveResult::Status::NoPixels, TooLarge(GetSize())};
    }
    return {};
}
