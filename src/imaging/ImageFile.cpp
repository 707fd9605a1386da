#include "imaging/ImageFile.h"

#include <algorithm>

#include "imaging/Resampler.h"

namespace {

// How much of a reduction is left to the resampler, since the decoder's own scaling is coarser: with 2.5 the
// result is at least 42 dB from that of a full decode on photographs, with 2 it falls below 41 dB on some.
constexpr double reductionLeft = 2.5;

} // namespace

int ChooseShrink(const ImageHeader& header, double scale)
{
    for (const int shrink : {8, 4, 2}) {
        if (header.canShrink && scale * reductionLeft * shrink <= 1) {
            return shrink;
        }
    }
    return 1;
}

CImageFile::CImageFile(const QString& path, const ImageHeader& header)
    : CImageNode(UprightSize(header.size, header.orientation)), path(path), header(header)
{}

void CImageFile::Announce(double scale) const
{
    const CMutexLock lock(mutex);
    announced = std::max(announced, scale);
    wholeNeeded = true;
}

void CImageFile::AnnounceResampled(const Resampling& resampling) const
{
    const CMutexLock lock(mutex);
    announced = std::max(announced, resampling.scale);
    FindScaled(resampling);
}

CPixels CImageFile::Evaluate(double scale) const
{
    const CMutexLock lock(mutex);
    return GetPixels(scale);
}

CPixels CImageFile::EvaluateResampled(const Resampling& resampling) const
{
    const CMutexLock lock(mutex);
    announced = std::max(announced, resampling.scale);
    Scaled& scaled = FindScaled(resampling);
    if (!scaled.pixels && decodedShrink == 0 && !wholeNeeded) {
        DecodeScaled();
    }
    if (!scaled.pixels) {
        return Resample(GetPixels(resampling.scale), resampling);
    }
    return *scaled.pixels;
}

CImageFile::Scaled& CImageFile::FindScaled(const Resampling& resampling) const
{
    for (Scaled& scaled : scaledImages) {
        if (scaled.resampling == resampling) {
            return scaled;
        }
    }
    return scaledImages.emplace_back(Scaled{resampling, {}});
}

// Leaves all without pixels if the file is one that can't be scaled while it is decoded.
void CImageFile::DecodeScaled() const
{
    std::vector<Resampling> resamplings;
    for (const Scaled& scaled : scaledImages) {
        resamplings.push_back(scaled.resampling);
    }
    try {
        const auto decodedScaled =
            DecodeScaledImages(path, header, {ChooseShrink(header, announced), resamplings});
        if (!decodedScaled) {
            return;
        }
        condition = decodedScaled->condition;
        for (size_t i = 0; i < scaledImages.size(); ++i) {
            scaledImages[i].pixels = decodedScaled->images[i];
        }
    } catch (const CNoPixelsException& failure) {
        condition = {ImageCondition::State::NotDecodable, failure.reason};
        throw;
    }
}

const CPixels& CImageFile::GetPixels(double scale) const
{
    announced = std::max(announced, scale);
    if (decodedShrink == 0 || decodedShrink > ChooseShrink(header, scale)) {
        decodedShrink = ChooseShrink(header, announced);
        decoded.reset();
        try {
            decoded = DecodeImage(path, header, decodedShrink);
            condition = decoded->condition;
        } catch (const CNoPixelsException& failure) {
            condition = {ImageCondition::State::NotDecodable, failure.reason};
        }
    }
    if (!decoded) {
        throw CNoPixelsException{condition.reason};
    }
    return decoded->pixels;
}

ImageCondition CImageFile::GetCondition() const
{
    const CMutexLock lock(mutex);
    return condition;
}
