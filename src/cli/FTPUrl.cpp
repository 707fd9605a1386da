#include "cli/FTPUrl.h"

#include <QStringDecoder>
#include <QUrl>

#include "cli/Answers.h"
#include "resources/StringTable.h"

namespace {

const QLatin1String Scheme("ftp://");
const QLatin1String NobodysName("anonymous");

[[noreturn]] void Refuse(const QString& reason)
{
    throw CWrongUse(Text(StringId::FTPAddressWrong, reason));
}

// A line break would end the command that carries the text to the server; a zero byte would cut it off.
void RefuseLineBreaks(const QString& text, const QString& part)
{
    for (const QChar character : text) {
        if (character == QLatin1Char('\r') || character == QLatin1Char('\n') || character.isNull()) {
            Refuse(Text(StringId::AddressPartNotPrintable, part));
        }
    }
}

QByteArray DecodePercents(const QByteArray& text, const QString& part)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes += text[i];
            continue;
        }
        const QByteArray digits = text.mid(i + 1, 2);
        const QByteArray byte = QByteArray::fromHex(digits);
        // fromHex leaves out what is no digit, so the way back tells.
        if (byte.size() != 1 || byte.toHex() != digits.toLower()) {
            Refuse(Text(StringId::AddressPartPercent, part));
        }
        bytes += byte;
        i += 2;
    }
    return bytes;
}

QString Decode(const QString& text, const QString& part)
{
    // A mark at the start (U+FEFF) belongs to the name.
    QStringDecoder utf8(QStringDecoder::Utf8,
                        QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    const QString decoded = utf8(DecodePercents(text.toUtf8(), part));
    if (utf8.hasError()) {
        Refuse(Text(StringId::AddressPartNotUtf8, part));
    }
    RefuseLineBreaks(decoded, part);
    return decoded;
}

void ParseUser(const QString& text, FTPUrl& url)
{
    const qsizetype colon = text.indexOf(QLatin1Char(':'));
    url.userName = Decode(text.left(colon), Text(StringId::UserNamePart));
    if (colon >= 0) {
        url.password = Decode(text.mid(colon + 1), Text(StringId::PasswordPart));
    }
    if (url.userName.isEmpty()) {
        Refuse(Text(StringId::AddressWithoutUserName));
    }
}

uint16_t ParsePort(const QString& text)
{
    bool isDecimal = text.size() <= 5;
    for (const QChar digit : text) {
        isDecimal = isDecimal && digit >= QLatin1Char('0') && digit <= QLatin1Char('9');
    }
    const uint16_t port = isDecimal ? text.toUShort() : 0;
    if (port == 0) {
        Refuse(Text(StringId::AddressPortWrong));
    }
    return port;
}

bool IsHostCharacter(QChar character)
{
    return character.unicode() < 0x80 &&
           (character.isLetterOrNumber() || QStringLiteral("-._").contains(character));
}

QString ParseHost(const QString& text)
{
    if (text.isEmpty()) {
        Refuse(Text(StringId::AddressWithoutServer));
    }
    if (text.startsWith(QLatin1Char('['))) {
        Refuse(Text(StringId::AddressIpv6));
    }
    // The ASCII form of an international name (RFC 3490); names that it refuses fail below.
    const QByteArray ascii = QUrl::toAce(text);
    const QString host = ascii.isEmpty() ? text : QString::fromLatin1(ascii);
    for (const QChar character : host) {
        if (!IsHostCharacter(character)) {
            Refuse(Text(StringId::AddressServerCharacter, QString(character)));
        }
    }
    return host;
}

QString ParseDirectory(const QString& text)
{
    QString directory = Decode(text, Text(StringId::DirectoryPart));
    while (directory.size() > 1 && directory.endsWith(QLatin1Char('/'))) {
        directory.chop(1);
    }
    return directory;
}

QString Encode(const QString& text, const char* kept)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text, kept));
}

} // namespace

bool IsFTPAddress(const QString& argument)
{
    return argument.startsWith(Scheme, Qt::CaseInsensitive);
}

FTPUrl ParseFTPUrl(const QString& text)
{
    if (!IsFTPAddress(text)) {
        Refuse(Text(StringId::AddressScheme, QString(Scheme)));
    }
    RefuseLineBreaks(text, Text(StringId::WholeTextPart));
    const QString rest = text.mid(Scheme.size());
    const qsizetype slash = rest.indexOf(QLatin1Char('/'));
    const QString authority = rest.left(slash);
    // The last "@", so that one in a password need not be encoded.
    const qsizetype at = authority.lastIndexOf(QLatin1Char('@'));
    const QString place = authority.mid(at + 1);
    const qsizetype colon = place.indexOf(QLatin1Char(':'));

    FTPUrl url{.userName = NobodysName, .password = {}, .server = {}, .port = 21, .directory = {}};
    if (at >= 0) {
        ParseUser(authority.left(at), url);
    }
    url.server = ParseHost(place.startsWith(QLatin1Char('[')) ? place : place.left(colon));
    if (colon >= 0) {
        url.port = ParsePort(place.mid(colon + 1));
    }
    url.directory = slash >= 0 ? ParseDirectory(rest.mid(slash + 1)) : QString();
    return url;
}

QString FormatFTPUrl(const FTPUrl& url)
{
    QString text = Scheme;
    if (url.userName != NobodysName && !url.userName.isEmpty()) {
        text += Encode(url.userName, "") + QLatin1Char('@');
    }
    text += url.server;
    if (url.port != 21) {
        text += QLatin1Char(':') + QString::number(url.port);
    }
    return url.directory.isEmpty() ? text : text + QLatin1Char('/') + Encode(url.directory, "/");
}
