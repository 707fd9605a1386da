#include "imaging/ColourConversion.h"

#include <cstdlib>
#include <map>
#include <vector>

#include <QByteArray>
#include <QCryptographicHash>

#include "common/ThreadSafety.h"

using vips::VError;
using vips::VImage;

namespace {

bool IsRgb(const VImage& image)
{
    return image.interpretation() == VIPS_INTERPRETATION_sRGB ||
           image.interpretation() == VIPS_INTERPRETATION_RGB ||
           image.interpretation() == VIPS_INTERPRETATION_RGB16;
}

// Colours of all parts of the RGB cube, 5 by 5 by 5.
std::vector<uint8_t> SampleColours()
{
    std::vector<uint8_t> colours;
    for (int i = 0; i < 125; ++i) {
        for (const int level : {i / 25, i / 5 % 5, i % 5}) {
            colours.push_back(static_cast<uint8_t>(level * 63));
        }
    }
    return colours;
}

VImage ApplyProfile(const VImage& image)
{
    return image.icc_transform("srgb", VImage::option()->set("embedded", true)->set("depth", 8));
}

// By hash, since the pictures of a gallery share a few profiles and a trial costs more than a small picture.
class CProfileMemory {
public:
    template <class Trial>
    bool IsSrgb(const QByteArray& profile, const Trial& trial)
    {
        const QByteArray key = QCryptographicHash::hash(profile, QCryptographicHash::Sha256);
        const CMutexLock lock(mutex);
        const auto known = answers.find(key);
        if (known != answers.end()) {
            return known->second;
        }
        if (answers.size() >= capacity) {
            answers.clear();
        }
        return answers[key] = trial();
    }

private:
    static constexpr size_t capacity = 100;

    CMutex mutex;
    std::map<QByteArray, bool> answers VISTORAMA_GUARDED_BY(mutex);
};

// Rather by what the profile does than by its name: makers call sRGB by many names. A difference of 2 is the
// rounding of the way there and back.
bool LeavesSrgbAlone(const QByteArray& profile)
{
    std::vector<uint8_t> colours = SampleColours();
    VImage samples = VImage::new_from_memory(colours.data(), colours.size(), 125, 1, 3, VIPS_FORMAT_UCHAR)
                         .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    samples.set(VIPS_META_ICC_NAME, nullptr, const_cast<char*>(profile.constData()),
                static_cast<size_t>(profile.size()));
    const VImage converted = ApplyProfile(samples);
    size_t size = 0;
    const std::unique_ptr<void, decltype(&g_free)> bytes(converted.write_to_memory(&size), &g_free);
    if (size != colours.size()) {
        return false;
    }
    const auto* found = static_cast<const uint8_t*>(bytes.get());
    for (size_t i = 0; i < size; ++i) {
        if (std::abs(found[i] - colours[i]) > 2) {
            return false;
        }
    }
    return true;
}

bool IsSrgbProfile(const VImage& image)
{
    static CProfileMemory memory;
    size_t length = 0;
    const auto* data = static_cast<const char*>(image.get_blob(VIPS_META_ICC_NAME, &length));
    const QByteArray profile(data, static_cast<qsizetype>(length));
    return memory.IsSrgb(profile, [&profile] { return LeavesSrgbAlone(profile); });
}

VImage WithProfileApplied(const VImage& image)
{
    if (image.get_typeof(VIPS_META_ICC_NAME) == 0) {
        return image;
    }
    try {
        return IsRgb(image) && IsSrgbProfile(image) ? image : ApplyProfile(image);
    } catch (const VError&) {
        vips_error_clear();
        return image;
    }
}

} // namespace

VImage ToSrgb(const VImage& image)
{
    VImage converted = WithProfileApplied(image);
    if (converted.interpretation() != VIPS_INTERPRETATION_sRGB) {
        converted = converted.colourspace(VIPS_INTERPRETATION_sRGB);
    }
    if (converted.format() != VIPS_FORMAT_UCHAR) {
        converted = converted.cast(VIPS_FORMAT_UCHAR);
    }
    if (converted.bands() < 3) {
        const VImage grey = converted.extract_band(0);
        const VImage colours = grey.bandjoin(std::vector<VImage>{grey, grey});
        converted = converted.bands() == 2 ? colours.bandjoin(converted.extract_band(1)) : colours;
    }
    return converted.bands() > 4 ? converted.extract_band(0, VImage::option()->set("n", 4)) : converted;
}
