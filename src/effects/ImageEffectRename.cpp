#include "effects/ImageEffectRename.h"

#include <QCryptographicHash>

#include "common/FileSystem.h"
#include "effects/FileNames.h"

namespace {

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

QString CImageEffectRename::GetResultFileName(const QString& path) const
{
    const FileNameParts name = SplitFileName(ExtractLastName(path));
    return ExtractFolder(path) + Shortened(SanitizeFileName(name.base)) +
           GetEncoderForExtension(name.extension.mid(1)).resultExtension;
}

void CImageEffectRename::Apply(CImageEffectSource&) const {}
