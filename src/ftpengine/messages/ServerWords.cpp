#include "ftpengine/messages/ServerWords.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr QChar lineEnd = QLatin1Char('\n');

// U+061C, U+200E, U+200F, U+202A to U+202E, U+2066 to U+2069 (UAX 9), the separators U+2028 and U+2029, and
// the characters that show as nothing: U+200B to U+200D, U+2060, U+FEFF.
bool IsUnfit(QChar c)
{
    const ushort code = c.unicode();
    return code < 0x20 || (code >= 0x7f && code < 0xa0) || code == 0x61c ||
           (code >= 0x200b && code <= 0x200f) || (code >= 0x2028 && code <= 0x202e) ||
           (code >= 0x2060 && code <= 0x2069) || code == 0xfeff;
}

} // namespace

QString CleanServerWords(const QString& words)
{
    QString clean;
    clean.reserve(words.size());
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QChar c = words[i];
        const bool endsLine =
            c == lineEnd || (c == QLatin1Char('\r') && !(i + 1 < words.size() && words[i + 1] == lineEnd));
        if (endsLine) {
            clean += lineEnd;
        } else if (c == QLatin1Char('\t')) {
            clean += QLatin1Char(' ');
        } else if (!IsUnfit(c)) {
            clean += c;
        }
    }
    while (clean.endsWith(lineEnd)) {
        clean.chop(1);
    }
    return clean;
}

bool DemandsTls(const FTPReply& refusal)
{
    constexpr int32_t byNumber[] = {522, 533, 534};
    constexpr int32_t byWords[] = {421, 530, 550};
    const auto isOf = [&refusal](const auto& codes) {
        return std::find(std::begin(codes), std::end(codes), refusal.code) != std::end(codes);
    };
    if (isOf(byNumber)) {
        return true;
    }
    // "530 Non-anonymous sessions must use encryption.", "550 SSL/TLS required on the control channel",
    // "421 Sorry, cleartext sessions are not accepted on this server."
    constexpr const char* words[] = {"tls", "ssl", "encrypt", "cleartext", "clear text"};
    return isOf(byWords) && std::any_of(std::begin(words), std::end(words), [&refusal](const char* word) {
               return refusal.text.contains(QLatin1String(word), Qt::CaseInsensitive);
           });
}
