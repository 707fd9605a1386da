#pragma once

#include <memory>
#include <vector>

#include "effects/ImageEffect.h"

// A chain of effects, applied in the order in which they were added. It owns them, together with whoever else
// shares them. Built by one thread; read by several once built.
class CImageEffectCompound final : public CImageEffect {
public:
    void Add(std::shared_ptr<const CImageEffect> effect);
    void Clear();

    // An empty chain returns the name unchanged.
    QString GetResultFileName(const QString& fileName) const override;
    void Apply(CImageEffectSource& source) const override;
    QString GetKey() const override;

private:
    std::vector<std::shared_ptr<const CImageEffect>> effects;
};
