#pragma once

#include <optional>

#include <QString>

#include "effects/ImageEffect.h"
#include "imaging/codecs/ImageEncoder.h"

// The names of result files, the encoder that goes with an extension, and the effect that chooses both. A
// name's base is what stands before the last "." of its last part, its extension that "." and what follows.

struct FileNameParts {
    QString base; // the folder included
    QString extension;
};

// A name without a "." is all base.
FileNameParts SplitFileName(const QString& fileName);

// "a.jpg" and "_r1" give "a_r1.jpg"; a name without a "." gets the suffix at its end.
QString WithSuffix(const QString& fileName, const QString& suffix);

// Each UTF-16 unit other than an ASCII letter, a digit, "-", "_" and "." becomes its number in radix 32: a
// blank becomes "10". One way only: two names may become one.
QString SanitizeFileName(const QString& name);

struct EncoderChoice {
    QString encoderName;     // "jpeg" or "png"
    QString resultExtension; // with its "."
};

// extension: without its ".", in any case. "bmp", "png" and "gif" become PNG, everything else JPEG.
EncoderChoice GetEncoderForExtension(const QString& extension);

// The first format whose MIME type contains encoderName.
std::optional<ImageEncoding::Format> GetEncoderClsid(const QString& encoderName);

// Throws CUnexpectedException naming the encoder if there is none.
ImageEncoding::Format RequireEncoder(const QString& encoderName);

// The format for a file to be written, by the extension of its path. Throws as RequireEncoder.
ImageEncoding::Format FormatForPath(const QString& path);

// Gives a file of the gallery a name that every server can hold. The first effect of a chain, since the
// others put their suffixes before the extension that this one chooses. Immutable; leaves pixels alone: the
// format is chosen by the name at Save.
class CImageEffectRename final : public CImageEffect {
public:
    // "/my pictures/Winter day.JPEG" gives "/my pictures/Winter10day.jpg": the folder stays.
    QString GetResultFileName(const QString& path) const override;
    void Apply(CImageEffectSource& source) const override;
    QString GetKey() const override { return QStringLiteral("rename"); }
};

// Keeps the results of two pictures apart whose names would be the same. The last effect of a chain, since it
// has to stand before the extension. Immutable; leaves pixels alone.
class CImageEffectNameSuffix final : public CImageEffect {
public:
    explicit CImageEffectNameSuffix(const QString& suffix) : suffix(suffix) {}

    // "a640480.jpg" gives "a640480_7c1f03.jpg".
    QString GetResultFileName(const QString& fileName) const override { return WithSuffix(fileName, suffix); }
    void Apply(CImageEffectSource& source) const override;
    QString GetKey() const override { return QStringLiteral("suffix"); }

private:
    const QString suffix;
};
