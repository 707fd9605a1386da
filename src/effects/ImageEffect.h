#pragma once

#include <memory>
#include <vector>

#include <QString>

class CImageEffectSource;

// One step from a source picture to a file of a gallery. Its two faces always agree: the name of the result
// carries every parameter that changes pixels, so that it can be known, and looked for, before any pixel is
// touched. Immutable, so several threads may use one object.
class CImageEffect {
public:
    virtual ~CImageEffect() = default;

    // fileName: a path or a name that holds a ".".
    virtual QString GetResultFileName(const QString& fileName) const = 0;
    virtual void Apply(CImageEffectSource& source) const = 0;

    // Everything beside the picture that the result's pixels come from: the kind, all parameters, and the
    // present state of files. Unlike the name it is never the same for different results. Null if that is
    // not known.
    virtual QString GetKey() const = 0;
};

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
