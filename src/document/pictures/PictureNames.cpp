#include "document/pictures/PictureNames.h"

#include <QCryptographicHash>

#include "common/FileSystem.h"
#include "common/Text.h"
#include "document/pictures/PictureInfo.h"
#include "effects/FileNames.h"
#include "effects/GeometricEffects.h"

namespace {

// What the chain of a page makes of it, up to the size: that is the same for two pictures of one page.
QString PublishedName(const CPictureInfo& record)
{
    QString name = CImageEffectRename().GetResultFileName(ExtractLastName(record.GetPath()));
    if (record.GetAngle() != 0) {
        name = CImageEffectRotate(record.GetAngle()).GetResultFileName(name);
    }
    return Lower(WithSuffix(name, record.GetNameSuffix()));
}

} // namespace

void CPictureNames::Claim(CPictureInfo& record)
{
    if (dynamic_cast<const CFilePictureInfo*>(&record) == nullptr) {
        return;
    }
    Release(record);
    QString name = PublishedName(record);
    for (int attempt = 0; owners.contains(name); ++attempt) {
        record.SetNameSuffix(NameSuffixFor(record, attempt));
        name = PublishedName(record);
    }
    owners[name] = &record;
    names[&record] = name;
}

void CPictureNames::Release(const CPictureInfo& record)
{
    const auto known = names.find(&record);
    if (known != names.end()) {
        owners.erase(known->second);
        names.erase(known);
    }
}

void CPictureNames::Clear()
{
    owners.clear();
    names.clear();
}

QString NameSuffixFor(const CPictureInfo& record, int attempt)
{
    if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(&record)) {
        return NameSuffixFor(QStringLiteral("#%1").arg(child->GetGalleryIndex()), attempt);
    }
    return NameSuffixFor(record.GetPath(), attempt);
}

QString NameSuffixFor(const QString& text, int attempt)
{
    constexpr qsizetype digits = 6;
    const QString hashed = attempt == 0 ? text : text + QStringLiteral(" %1").arg(attempt);
    const QByteArray hash = QCryptographicHash::hash(hashed.toUtf8(), QCryptographicHash::Sha256).toHex();
    return QLatin1Char('_') + QString::fromLatin1(hash.left(digits));
}
