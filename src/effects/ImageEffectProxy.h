#pragma once

#include <memory>

#include "effects/ImageEffect.h"

// Stands in a chain for an effect that belongs to somebody else, such as the stamps of a gallery. It shares
// the target, so that a chain whose work is put off outlives the target's first owner.
class CImageEffectProxy final : public CImageEffect {
public:
    // target: not null.
    explicit CImageEffectProxy(std::shared_ptr<const CImageEffect> target) : target(std::move(target)) {}

    QString GetResultFileName(const QString& fileName) const override
    {
        return target->GetResultFileName(fileName);
    }
    void Apply(CImageEffectSource& source) const override { target->Apply(source); }
    QString GetKey() const override { return target->GetKey(); }

private:
    const std::shared_ptr<const CImageEffect> target;
};
