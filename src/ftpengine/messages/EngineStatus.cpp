#include "ftpengine/messages/EngineStatus.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <netdb.h>

#include "common/Trace.h"
#include "resources/StringTable.h"

namespace {

struct Mapping {
    int system;
    int engine;
};

constexpr int systemCallFailed = 10107;

constexpr Mapping errnoMappings[] = {
    {EINTR, 10004},
    {EBADF, 10009},
    {EACCES, 10013},
    {EPERM, 10013},
    {EFAULT, 10014},
    {EINVAL, 10022},
    {EMFILE, 10024},
    {ENFILE, 10024},
    {EWOULDBLOCK, 10035},
    {EINPROGRESS, 10036},
    {EALREADY, 10037},
    {ENOTSOCK, 10038},
    {EDESTADDRREQ, 10039},
    {EMSGSIZE, EngineStatus::MessageTooLong},
    {EPROTOTYPE, 10041},
    {ENOPROTOOPT, 10042},
    {EPROTONOSUPPORT, EngineStatus::ProtocolNotSupported},
    {EOPNOTSUPP, 10045},
    {EAFNOSUPPORT, 10047},
    {EADDRINUSE, 10048},
    {EADDRNOTAVAIL, 10049},
    {ENETDOWN, 10050},
    {ENETUNREACH, 10051},
    {ENETRESET, 10052},
    {ECONNABORTED, 10053},
    {ECONNRESET, EngineStatus::ConnectionReset},
    {EPIPE, EngineStatus::ConnectionReset}, // the peer has closed before us
    {ENOBUFS, EngineStatus::NoBufferSpace},
    {ENOMEM, EngineStatus::NoBufferSpace},
    {EISCONN, 10056},
    {ENOTCONN, 10057},
    {ETIMEDOUT, EngineStatus::TimedOut},
    {ECONNREFUSED, 10061},
    {EHOSTUNREACH, 10065},
    {ECANCELED, EngineStatus::Aborted},
#ifdef ESHUTDOWN
    {ESHUTDOWN, 10058},
#endif
#ifdef EHOSTDOWN
    {EHOSTDOWN, 10064},
#endif
};

constexpr Mapping resolverMappings[] = {
    {EAI_NONAME, EngineStatus::HostNotFound},
    {EAI_AGAIN, EngineStatus::TryAgain},
    {EAI_FAIL, 11003},
    {EAI_BADFLAGS, 10022},
    {EAI_FAMILY, 10047},
    {EAI_SOCKTYPE, 10044},
    {EAI_SERVICE, 10109},
    {EAI_MEMORY, 8},
#ifdef EAI_NODATA
    {EAI_NODATA, EngineStatus::HostNotFound}, // not 11004, which stands for an unreadable PASV reply here
#endif
#ifdef EAI_ADDRFAMILY
    {EAI_ADDRFAMILY, EngineStatus::HostNotFound},
#endif
};

template <std::size_t Size>
int Mapped(const Mapping (&mappings)[Size], int system)
{
    const auto found = std::find_if(std::begin(mappings), std::end(mappings),
                                    [system](const Mapping& mapping) { return mapping.system == system; });
    return found == std::end(mappings) ? systemCallFailed : found->engine;
}

struct Words {
    int status;
    StringId title;
    StringId description;
};

constexpr Words words[] = {
    {EngineStatus::UnknownReply, StringId::UnknownReplyTitle, StringId::UnknownReplyDescription},
    {8, StringId::NoBufferSpaceTitle, StringId::NoBufferSpaceDescription},
    {EngineStatus::InvalidName, StringId::InvalidNameTitle, StringId::InvalidNameDescription},
    {EngineStatus::Aborted, StringId::AbortedTitle, StringId::AbortedDescription},
    {10013, StringId::NotPermittedTitle, StringId::NotPermittedDescription},
    {10024, StringId::NoBufferSpaceTitle, StringId::NoBufferSpaceDescription},
    {EngineStatus::MessageTooLong, StringId::MessageTooLongTitle, StringId::MessageTooLongDescription},
    {EngineStatus::ProtocolNotSupported, StringId::ProtocolNotSupportedTitle,
     StringId::ProtocolNotSupportedDescription},
    {10047, StringId::NetworkUnreachableTitle, StringId::NetworkUnreachableDescription},
    {10049, StringId::NetworkUnreachableTitle, StringId::NetworkUnreachableDescription},
    {10050, StringId::NetworkDownTitle, StringId::NetworkDownDescription},
    {10051, StringId::NetworkUnreachableTitle, StringId::NetworkUnreachableDescription},
    {10052, StringId::NetworkResetTitle, StringId::NetworkResetDescription},
    {10053, StringId::ConnectionAbortedTitle, StringId::ConnectionAbortedDescription},
    {EngineStatus::ConnectionReset, StringId::ConnectionResetTitle, StringId::ConnectionResetDescription},
    {EngineStatus::NoBufferSpace, StringId::NoBufferSpaceTitle, StringId::NoBufferSpaceDescription},
    {EngineStatus::TimedOut, StringId::TimedOutTitle, StringId::TimedOutDescription},
    {10061, StringId::ConnectionRefusedTitle, StringId::ConnectionRefusedDescription},
    {10064, StringId::HostDownTitle, StringId::HostDownDescription},
    {10065, StringId::NoRouteTitle, StringId::NoRouteDescription},
    {systemCallFailed, StringId::SystemCallFailedTitle, StringId::SystemCallFailedDescription},
    {EngineStatus::HostNotFound, StringId::HostNotFoundTitle, StringId::HostNotFoundDescription},
    {EngineStatus::TryAgain, StringId::NoAnswerAboutHostTitle, StringId::NoAnswerAboutHostDescription},
    {11003, StringId::NoAnswerAboutHostTitle, StringId::NoAnswerAboutHostDescription},
    {EngineStatus::UnreadablePasv, StringId::UnreadablePasvTitle, StringId::UnreadablePasvDescription},
    {EngineStatus::UntrustedServer, StringId::UntrustedServerTitle, StringId::UntrustedServerDescription},
    {EngineStatus::TlsNotOffered, StringId::TlsNotOfferedTitle, StringId::TlsNotOfferedDescription},
    {EngineStatus::TlsDemanded, StringId::TlsDemandedTitle, StringId::TlsDemandedDescription},
    {EngineStatus::TlsFailed, StringId::TlsFailedTitle, StringId::TlsFailedDescription},
};

Words WordsOf(int status)
{
    const auto found = std::find_if(std::begin(words), std::end(words),
                                    [status](const Words& row) { return row.status == status; });
    return found == std::end(words)
               ? Words{status, StringId::UnknownStatusTitle, StringId::UnknownStatusDescription}
               : *found;
}

} // namespace

int EngineStatus::FromErrno(int error)
{
    return Mapped(errnoMappings, error);
}

int EngineStatus::FromResolver(int error)
{
    return error == EAI_SYSTEM ? FromErrno(errno) : Mapped(resolverMappings, error);
}

QString EngineStatus::GetWords(int status)
{
    return Text(WordsOf(status).title);
}

QString EngineStatus::GetTitle(int status)
{
    return QStringLiteral("0x%1 ").arg(static_cast<uint32_t>(status), 8, 16, QLatin1Char('0')) +
           GetWords(status);
}

QString EngineStatus::GetDescription(int status)
{
    return Text(WordsOf(status).description);
}

void ThrowTraced(const char* text, int number)
{
    TraceNumber(text, number);
    throw number;
}

void ThrowTracedLiterally(const char* text, int number)
{
    TraceLiterally(text);
    throw number;
}

void TraceNumber(const char* text, int number)
{
    Trace(QStringLiteral("\"%1\"%2").arg(QLatin1String(text)).arg(number));
}

void TraceLiterally(const char* text)
{
    Trace(QStringLiteral("_T(\"%1\")").arg(QLatin1String(text)));
}
