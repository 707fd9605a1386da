#include "effects/FileNames.h"

#include <QCryptographicHash>

#include "common/Exceptions.h"
#include "common/FileSystem.h"

namespace {

bool IsBetween(QChar unit, char first, char last)
{
    return unit >= QLatin1Char(first) && unit <= QLatin1Char(last);
}

// Asked for each letter of all names of a project.
bool StaysInName(QChar unit)
{
    return IsBetween(unit, 'a', 'z') || IsBetween(unit, 'A', 'Z') || IsBetween(unit, '0', '9') ||
           unit == QLatin1Char('-') || unit == QLatin1Char('_') || unit == QLatin1Char('.');
}

// A base of 255 letters that each become two or three would be a name that no file system takes, and the
// suffixes of the other effects are still to come. Such a base keeps its beginning; a hash of the whole keeps
// it apart from others that begin alike. Shorter names are never touched: they are published already.
QString Shortened(const QString& sanitised)
{
    constexpr qsizetype longest = 150;
    constexpr qsizetype hashLength = 16;
    if (sanitised.size() <= longest) {
        return sanitised;
    }
    const QByteArray hash =
        QCryptographicHash::hash(sanitised.toLatin1(), QCryptographicHash::Sha256).toHex();
    return sanitised.left(longest - hashLength) + QString::fromLatin1(hash.left(hashLength));
}

} // namespace

FileNameParts SplitFileName(const QString& fileName)
{
    const QString lastName = ExtractLastName(fileName);
    const qsizetype dot = lastName.lastIndexOf(QLatin1Char('.'));
    const qsizetype extensionLength = dot < 0 ? 0 : lastName.size() - dot;
    return {fileName.chopped(extensionLength), fileName.right(extensionLength)};
}

QString WithSuffix(const QString& fileName, const QString& suffix)
{
    const FileNameParts parts = SplitFileName(fileName);
    return parts.base + suffix + parts.extension;
}

QString SanitizeFileName(const QString& name)
{
    QString sanitised;
    for (const QChar unit : name) {
        sanitised += StaysInName(unit) ? QString(unit) : QString::number(unit.unicode(), 32);
    }
    return sanitised;
}

EncoderChoice GetEncoderForExtension(const QString& extension)
{
    for (const QLatin1String lossless : {QLatin1String("bmp"), QLatin1String("png"), QLatin1String("gif")}) {
        if (extension.compare(lossless, Qt::CaseInsensitive) == 0) {
            return {QStringLiteral("png"), QStringLiteral(".png")};
        }
    }
    return {QStringLiteral("jpeg"), QStringLiteral(".jpg")};
}

std::optional<ImageEncoding::Format> GetEncoderClsid(const QString& encoderName)
{
    if (QStringLiteral("image/jpeg").contains(encoderName)) {
        return ImageEncoding::Format::Jpeg;
    }
    if (QStringLiteral("image/png").contains(encoderName)) {
        return ImageEncoding::Format::Png;
    }
    if (QStringLiteral("image/bmp").contains(encoderName)) {
        return ImageEncoding::Format::Bmp;
    }
    return std::nullopt;
}

ImageEncoding::Format RequireEncoder(const QString& encoderName)
{
    const std::optional<ImageEncoding::Format> format = GetEncoderClsid(encoderName);
    if (!format) {
        throw CUnexpectedException("ImageEffect", __LINE__, Text(StringId::EncoderNotFound, encoderName));
    }
    return *format;
}

ImageEncoding::Format FormatForPath(const QString& path)
{
    return RequireEncoder(GetEncoderForExtension(SplitFileName(path).extension.mid(1)).encoderName);
}

QString CImageEffectRename::GetResultFileName(const QString& path) const
{
    const FileNameParts name = SplitFileName(ExtractLastName(path));
    return ExtractFolder(path) + Shortened(SanitizeFileName(name.base)) +
           GetEncoderForExtension(name.extension.mid(1)).resultExtension;
}

void CImageEffectRename::Apply(CImageEffectSource&) const {}

void CImageEffectNameSuffix::Apply(CImageEffectSource&) const {}
