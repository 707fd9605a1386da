#include "ftpengine/sftp/SftpRefusal.h"

#include <algorithm>
#include <iterator>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

struct Translation {
    uint32_t code;
    const char* name;
    int32_t reply; // RFC 959, 4.2
};

// From 9 on they belong to later versions of the protocol.
constexpr Translation translations[] = {
    {1, "SSH_FX_EOF", RefusalCode::NotAvailable},
    {2, "SSH_FX_NO_SUCH_FILE", RefusalCode::NotAvailable},
    {3, "SSH_FX_PERMISSION_DENIED", RefusalCode::NotAvailable},
    {4, "SSH_FX_FAILURE", RefusalCode::NotAvailable},
    {5, "SSH_FX_BAD_MESSAGE", 500},
    {8, "SSH_FX_OP_UNSUPPORTED", 502},
    {9, "SSH_FX_INVALID_HANDLE", 451},
    {10, "SSH_FX_NO_SUCH_PATH", RefusalCode::NotAvailable},
    {11, "SSH_FX_FILE_ALREADY_EXISTS", RefusalCode::NotAvailable},
    {12, "SSH_FX_WRITE_PROTECT", RefusalCode::NotAvailable},
    {13, "SSH_FX_NO_MEDIA", 452},
    {14, "SSH_FX_NO_SPACE_ON_FILESYSTEM", RefusalCode::NoSpace},
    {15, "SSH_FX_QUOTA_EXCEEDED", RefusalCode::NoSpace},
    {20, "SSH_FX_INVALID_FILENAME", 553},
};

constexpr uint32_t noConnection = 6;
constexpr uint32_t connectionLost = 7;

// Most servers have one code for all that has none of its own, and say in words what it was.
bool TellsOfNoSpace(const QString& words)
{
    static const QLatin1String signs[] = {
        QLatin1String("no space"),         QLatin1String("quota"),
        QLatin1String("disk full"),        QLatin1String("disk is full"),
        QLatin1String("not enough space"), QLatin1String("enospc"),
        QLatin1String("edquot"),
    };
    return std::any_of(std::begin(signs), std::end(signs),
                       [&words](QLatin1String sign) { return words.contains(sign, Qt::CaseInsensitive); });
}

} // namespace

FTPReply TranslateRefusal(const SftpStatus& status, const QString& what)
{
    if (status.code == noConnection || status.code == connectionLost) {
        ThrowTracedLiterally("TranslateRefusal, the server has lost its connection",
                             EngineStatus::ConnectionReset);
    }
    const auto found = std::find_if(std::begin(translations), std::end(translations),
                                    [&status](const Translation& row) { return row.code == status.code; });
    const bool isKnown = found != std::end(translations);
    // On one line: a reply of FTP ends with its line.
    QString words = Widen(status.text).simplified();
    if (words.isEmpty()) {
        words = isKnown ? QString::fromLatin1(found->name) : QString::number(status.code);
    }
    const int32_t usual = isKnown ? found->reply : RefusalCode::NotAvailable;
    return MakeRefusal(TellsOfNoSpace(words) ? RefusalCode::NoSpace : usual,
                       what + QStringLiteral(": ") + words);
}
