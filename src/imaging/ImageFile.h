#pragma once

#include <optional>

#include "common/ThreadSafety.h"
#include "imaging/ImageDecoder.h"
#include "imaging/ImageNode.h"

// The largest reduction by the decoder (1, 2, 4 or 8) that leaves enough for a result of that scale.
int ChooseShrink(const ImageHeader& header, double scale);

// A picture file: the header is read at construction, the pixels when they are first asked for. It is decoded
// at the smallest scale of the decoder that serves the largest of all images derived from it. If only scaled
// images were announced, they are all made while it is decoded, and kept; else the pixels are. Shared by
// those images, on any number of threads.
class CImageFile final : public CImageNode {
public:
    CImageFile(const QString& path, const ImageHeader& header);

    CPixels Evaluate(double scale) const override;
    void Announce(double scale) const override;
    CPixels EvaluateResampled(const Resampling& resampling) const override;
    void AnnounceResampled(const Resampling& resampling) const override;
    ImageCondition GetCondition() const override;

private:
    struct Scaled {
        Resampling resampling;
        std::optional<CPixels> pixels; // none before it has been decoded
    };

    const CPixels& GetPixels(double scale) const VISTORAMA_REQUIRES(mutex);
    Scaled& FindScaled(const Resampling& resampling) const VISTORAMA_REQUIRES(mutex);
    void DecodeScaled() const VISTORAMA_REQUIRES(mutex);

    // Constant after construction.
    const QString path;
    const ImageHeader header;

    // Held while decoding: who else asks wants the same pixels.
    mutable CMutex mutex;
    mutable double announced VISTORAMA_GUARDED_BY(mutex) = 0;  // the largest scale so far
    mutable int decodedShrink VISTORAMA_GUARDED_BY(mutex) = 0; // 0: not yet decoded
    mutable std::optional<DecodedImage> decoded VISTORAMA_GUARDED_BY(mutex);
    mutable bool wholeNeeded VISTORAMA_GUARDED_BY(mutex) = false;
    mutable std::vector<Scaled> scaledImages VISTORAMA_GUARDED_BY(mutex);
    mutable ImageCondition condition VISTORAMA_GUARDED_BY(mutex);
};

// A file that has no picture to give.
class CUnreadableFile final : public CImageNode {
public:
    explicit CUnreadableFile(const QString& reason) : CImageNode(QSize(0, 0)), reason(reason) {}

    CPixels Evaluate(double) const override { throw CNoPixelsException{reason}; }
    void Announce(double) const override {}
    ImageCondition GetCondition() const override { return {ImageCondition::State::NotDecodable, reason}; }

private:
    const QString reason;
};
