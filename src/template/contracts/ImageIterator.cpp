#include "template/contracts/ImageIterator.h"

#include "effects/ImageEffect.h"

CImageIterator::CImageIterator()
{
    for (auto& effects : stampEffects) {
        effects = std::make_shared<CImageEffectCompound>();
    }
}

CImageIterator::~CImageIterator() = default;

std::shared_ptr<const CImageEffectCompound> CImageIterator::GetEffectsForSize(int32_t width,
                                                                              int32_t height) const
{
    return stampEffects[static_cast<size_t>(GetSizeClass(width, height))];
}

QString CImageIterator::GetGalleryFileStem() const
{
    return QString();
}

int GetSizeClass(int32_t width, int32_t height)
{
    constexpr int32_t limits[] = {200, 600};
    int sizeClass = 0;
    for (const int32_t limit : limits) {
        if (width < limit && height < limit) {
            return sizeClass;
        }
        ++sizeClass;
    }
    return sizeClass;
}
