#include "deploy/server/SiteNames.h"

#include <algorithm>

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStringList>

namespace {

constexpr qsizetype keyDigits = 32;
constexpr qsizetype pathDigits = 12; // enough to tell the files of one directory apart

QString HashOf(const QString& text)
{
    return QString::fromLatin1(QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1).toHex());
}

bool IsHexadecimal(const QString& text, qsizetype digits)
{
    return text.size() == digits && std::all_of(text.begin(), text.end(), [](QChar c) {
               return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
                      (c >= QLatin1Char('a') && c <= QLatin1Char('f'));
           });
}

bool IsNumber(const QString& text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
}

} // namespace

QString ServerPlace::PathOf(const QString& path) const
{
    if (directory.isEmpty() || path.isEmpty()) {
        return directory + path;
    }
    return directory.endsWith(QLatin1Char('/')) ? directory + path : directory + QLatin1Char('/') + path;
}

bool IsSitePath(const QString& path)
{
    const QStringList names = path.split(QLatin1Char('/'));
    const auto isUsual = [](const QString& name) {
        return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..");
    };
    return std::all_of(names.begin(), names.end(), isUsual) && names.first() != ManifestFolder &&
           std::none_of(path.begin(), path.end(),
                        [](QChar c) { return c.category() == QChar::Other_Control; });
}

QString DirectoryOf(const QString& path)
{
    return path.left(std::max<qsizetype>(path.lastIndexOf(QLatin1Char('/')), 0));
}

QString NameOf(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString ManifestPathFor(const QString& projectKey)
{
    const bool isId = IsHexadecimal(projectKey, keyDigits);
    return ManifestFolder + QStringLiteral("/manifest-") +
           (isId ? projectKey : HashOf(projectKey).left(keyDigits));
}

QString TemporaryPathFor(const QString& sender, const QString& path)
{
    const QString name = QStringLiteral("vistorama-%1-%2.part").arg(sender, HashOf(path).left(pathDigits));
    const QString directory = DirectoryOf(path);
    return directory.isEmpty() ? name : directory + QLatin1Char('/') + name;
}

QString SenderOfTemporary(const QString& path)
{
    static const QRegularExpression form(QStringLiteral("^vistorama-([0-9a-f]{8})-[0-9a-f]{12}\\.part$"));
    return form.match(NameOf(path)).captured(1);
}

QString MakeSender()
{
    return QStringLiteral("%1").arg(QRandomGenerator::system()->generate(), 8, 16, QLatin1Char('0'));
}

bool IsSender(const QString& text)
{
    constexpr qsizetype digits = 8;
    return IsHexadecimal(text, digits);
}

SiteFileKind KindOfSiteFile(const QString& path)
{
    const QString name = NameOf(path).toLower();
    const QString directory = DirectoryOf(path);
    if (name == QLatin1String("index.html") || name == QLatin1String("index.htm")) {
        return SiteFileKind::Entry;
    }
    const bool isMarkup = name.endsWith(QLatin1String("html")) || name.endsWith(QLatin1String(".htm"));
    return isMarkup || directory.isEmpty() || IsNumber(directory) ? SiteFileKind::Page : SiteFileKind::Asset;
}
