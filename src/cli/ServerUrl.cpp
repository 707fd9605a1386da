#include "cli/ServerUrl.h"

#include <algorithm>
#include <arpa/inet.h>

#include <QRegularExpression>
#include <QStringDecoder>
#include <QUrl>

#include "cli/Answers.h"
#include "common/Text.h"
#include "resources/StringTable.h"

namespace {

const QLatin1String NobodysName("anonymous");

struct Scheme {
    QLatin1String name;
    ServerProtocol protocol;
};

const Scheme Schemes[] = {
    {QLatin1String("ftp"), ServerProtocol::Ftp},
    {QLatin1String("ftpes"), ServerProtocol::FtpTls},
    {QLatin1String("ftps"), ServerProtocol::FtpImplicitTls},
    {QLatin1String("sftp"), ServerProtocol::Sftp},
};

// "sftp" of "sftp://host"; empty if there is none (RFC 3986, 3.1). One letter is a drive elsewhere.
QString SchemeOf(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("^([A-Za-z][A-Za-z0-9+.-]+)://"));
    return form.match(text).captured(1);
}

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

ServerProtocol ParseScheme(const QString& text)
{
    const QString name = SchemeOf(text);
    for (const Scheme& scheme : Schemes) {
        if (name.compare(scheme.name, Qt::CaseInsensitive) == 0) {
            return scheme.protocol;
        }
    }
    Refuse(Text(StringId::AddressSchemes));
}

void ParseUser(const QString& text, ServerUrl& url)
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

// "[::1]" (RFC 3986, 3.2.2).
QString ParseHostInBrackets(const QString& text)
{
    const QString host = text.endsWith(QLatin1Char(']')) ? text.mid(1).chopped(1).toLower() : QString();
    in6_addr address{};
    if (::inet_pton(AF_INET6, Narrow(host).c_str(), &address) != 1) {
        Refuse(Text(StringId::AddressBracketsWrong));
    }
    return host;
}

QString ParseHost(const QString& text)
{
    if (text.isEmpty()) {
        Refuse(Text(StringId::AddressWithoutServer));
    }
    if (text.startsWith(QLatin1Char('['))) {
        return ParseHostInBrackets(text);
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

// "[::1]:21" has colons of its own.
qsizetype FindPortColon(const QString& place)
{
    const qsizetype bracket = place.startsWith(QLatin1Char('[')) ? place.indexOf(QLatin1Char(']')) : 0;
    return place.indexOf(QLatin1Char(':'), std::max<qsizetype>(bracket, 0));
}

QString ParseDirectory(const QString& text, ServerProtocol protocol)
{
    QString directory = Decode(text, Text(StringId::DirectoryPart));
    if (protocol == ServerProtocol::Sftp) {
        directory = WithoutHome(directory);
    }
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

QString WithoutHome(QString directory)
{
    while (directory == QLatin1String("~") || directory.startsWith(QLatin1String("~/"))) {
        directory.remove(0, 1);
        // "~//www" is below the login's folder as well.
        while (directory.startsWith(QLatin1Char('/'))) {
            directory.remove(0, 1);
        }
    }
    return directory;
}

bool IsServerAddress(const QString& argument)
{
    return !SchemeOf(argument).isEmpty();
}

ServerUrl ParseServerUrl(const QString& text)
{
    const ServerProtocol protocol = ParseScheme(text);
    RefuseLineBreaks(text, Text(StringId::WholeTextPart));
    const QString rest = text.section(QStringLiteral("://"), 1);
    const qsizetype slash = rest.indexOf(QLatin1Char('/'));
    const QString authority = rest.left(slash);
    // The last "@", so that one in a password need not be encoded.
    const qsizetype at = authority.lastIndexOf(QLatin1Char('@'));
    const QString place = authority.mid(at + 1);
    const qsizetype colon = FindPortColon(place);

    ServerUrl url{.protocol = protocol,
                  .userName = NobodysName,
                  .password = {},
                  .server = {},
                  .port = DefaultPortOf(protocol),
                  .directory = {}};
    if (at >= 0) {
        ParseUser(authority.left(at), url);
    }
    url.server = ParseHost(place.left(colon));
    if (colon >= 0) {
        url.port = ParsePort(place.mid(colon + 1));
    }
    if (at < 0 && protocol == ServerProtocol::Sftp) {
        Refuse(Text(StringId::AddressNeedsUser));
    }
    url.directory = slash >= 0 ? ParseDirectory(rest.mid(slash + 1), protocol) : QString();
    return url;
}

QString FormatServerUrl(const ServerUrl& url)
{
    QString text;
    for (const Scheme& scheme : Schemes) {
        if (scheme.protocol == url.protocol) {
            text = scheme.name;
        }
    }
    text += QStringLiteral("://");
    const bool isNobody = url.userName == NobodysName && url.protocol != ServerProtocol::Sftp;
    if (!isNobody && !url.userName.isEmpty()) {
        text += Encode(url.userName, "") + QLatin1Char('@');
    }
    const bool isIpv6 = url.server.contains(QLatin1Char(':'));
    text += isIpv6 ? QLatin1Char('[') + url.server + QLatin1Char(']') : url.server;
    if (url.port != DefaultPortOf(url.protocol)) {
        text += QLatin1Char(':') + QString::number(url.port);
    }
    return url.directory.isEmpty() ? text : text + QLatin1Char('/') + Encode(url.directory, "/");
}

QString FormatServerUrl(const FTPDestinationConnection& connection)
{
    return FormatServerUrl(ServerUrl{.protocol = connection.protocol,
                                     .userName = connection.userName,
                                     .password = {},
                                     .server = connection.server,
                                     .port = connection.port,
                                     .directory = connection.directory});
}

std::optional<QByteArray> ParseFingerprint(const QString& text)
{
    constexpr qsizetype hashSize = 32; // SHA-256
    const QLatin1String prefix("sha256:");
    if (!text.startsWith(prefix, Qt::CaseInsensitive)) {
        return std::nullopt;
    }
    const QByteArray value = text.mid(prefix.size()).toUtf8();
    QByteArray digits = value;
    digits.replace(":", "");
    const QByteArray fromDigits = QByteArray::fromHex(digits);
    // fromHex leaves out what is no digit, so the way back tells.
    if (fromDigits.size() == hashSize && fromDigits.toHex() == digits.toLower()) {
        return fromDigits;
    }
    const auto fromBase64 = QByteArray::fromBase64Encoding(value, QByteArray::AbortOnBase64DecodingErrors);
    return fromBase64 && fromBase64.decoded.size() == hashSize ? std::optional(fromBase64.decoded)
                                                               : std::nullopt;
}
