#pragma once

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
    // present state of files. Unlike the name it is never the same for different results. Null if it can't be
    // told.
    virtual QString GetKey() const = 0;
};
