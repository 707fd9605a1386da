#include "Check.h"
#include "cli/Answers.h"
#include "cli/ServerLogin.h"
#include "cli/ServerUrl.h"

namespace {

// Each "*" of an input stands for a password that is found again in any text. No text of the program holds
// three of its characters in a row.
const QString Secret = QStringLiteral("Zq7#Kw9");

bool ShowsSecret(const QString& text)
{
    for (qsizetype i = 0; i + 3 <= Secret.size(); ++i) {
        if (text.contains(Secret.mid(i, 3), Qt::CaseInsensitive)) {
            return true;
        }
    }
    return false;
}

// What would end or cut off the command that carries the text to the server.
bool EndsCommand(const QString& text)
{
    return text.contains(QLatin1Char('\r')) || text.contains(QLatin1Char('\n')) || text.contains(QChar());
}

void CheckParts(const ServerUrl& url)
{
    Check(url.port != 0, "a port is a number from 1");
    Check(!url.userName.isEmpty(), "an address without a user is anonymous");
    Check(!url.server.isEmpty(), "an address names a server");
    const QString marks =
        url.server.contains(QLatin1Char(':')) ? QStringLiteral(":.") : QStringLiteral("-._");
    for (const QChar character : url.server) {
        Check(marks.contains(character) || (character.unicode() < 0x80 && character.isLetterOrNumber()),
              "a server's name is one of the Internet, or an address");
    }
    for (const QString& text : {url.userName, url.password.value_or(QString()), url.directory}) {
        Check(!EndsCommand(text), "nothing in an address ends a command");
    }
    Check(url.directory == QLatin1String("/") || !url.directory.endsWith(QLatin1Char('/')),
          "a directory has no separator at its end");
}

// The form in which the program shows and suggests an address.
void CheckWritten(const ServerUrl& url)
{
    const QString written = FormatServerUrl(url);
    for (const QChar character : written) {
        Check(character > QLatin1Char(' ') && character < QLatin1Char('\x7f'),
              "a written address has neither control characters nor blanks");
    }
    const ServerUrl again = ParseServerUrl(written);
    Check(again.protocol == url.protocol && again.userName == url.userName && again.server == url.server &&
              again.port == url.port && again.directory == url.directory,
          "a written address is parsed as the same one");
    Check(!again.password, "an address is written without its password");
    Check(FormatServerUrl(again) == written, "an address has one written form");
}

void CheckConnection(const QString& address, const ServerUrl& url)
{
    const auto connection = FindConnection(address);
    Check(connection.has_value(), "nobody is asked for a password that is there");
    Check(connection->protocol == url.protocol && connection->server == url.server &&
              connection->port == url.port && connection->userName == url.userName &&
              connection->directory == url.directory,
          "a connection goes where the address leads");
    Check(!url.password || connection->password == *url.password, "an address's own password comes first");
}

} // namespace

// Bytes of an argument that may be an FTP address: it is refused without a word of its password, or its parts
// can be sent to a server and written again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    // Otherwise a person at the terminal would be asked.
    static const bool hasPassword = qputenv("VISTORAMA_FTP_PASSWORD", "of the environment");
    Check(hasPassword, "a variable can be set");
    QString address = QString::fromUtf8(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    address.replace(QLatin1Char('*'), Secret);
    try {
        const ServerUrl url = ParseServerUrl(address);
        Check(IsServerAddress(address), "only an address is parsed as one");
        CheckParts(url);
        CheckWritten(url);
        CheckConnection(address, url);
    } catch (const CWrongUse& refusal) {
        Check(!refusal.GetReason().isEmpty(), "a refusal has a reason");
        Check(!ShowsSecret(refusal.GetReason()), "a refusal never shows a password");
    }
    return 0;
}
