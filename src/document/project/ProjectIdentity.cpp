#include "document/project/ProjectIdentity.h"

#include <algorithm>
#include <array>

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

namespace {

constexpr qsizetype DigitCount = 32;

// Absolute, without "." and ".."; a file that is there by its real name.
QString RealPathOf(const QString& path)
{
    const QFileInfo file(path);
    const QString canonical = file.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(file.absoluteFilePath()) : canonical;
}

} // namespace

QString MakeProjectId()
{
    std::array<quint32, 4> numbers{};
    QRandomGenerator::system()->fillRange(numbers.data(), numbers.size());
    QString id;
    for (const quint32 number : numbers) {
        id += QStringLiteral("%1").arg(number, 8, 16, QLatin1Char('0'));
    }
    return id;
}

bool IsProjectId(const QString& text)
{
    return text.size() == DigitCount && std::all_of(text.begin(), text.end(), [](QChar character) {
               const char16_t code = character.toLower().unicode();
               return (code >= u'0' && code <= u'9') || (code >= u'a' && code <= u'f');
           });
}

bool IsSameProjectFile(const QString& a, const QString& b)
{
    return RealPathOf(a) == RealPathOf(b);
}
