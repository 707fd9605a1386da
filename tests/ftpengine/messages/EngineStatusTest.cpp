#include "ftpengine/messages/EngineStatus.h"

#include <cerrno>
#include <netdb.h>
#include <set>

#include "support/TraceRecorder.h"

TEST(EngineStatus, SystemErrorsHaveTheEnginesNumbers)
{
    const struct {
        int system;
        int engine;
    } rows[] = {
        {ECONNREFUSED, 10061},  {ETIMEDOUT, 10060}, {ECONNRESET, 10054},   {EPIPE, 10054},
        {ENETUNREACH, 10051},   {ENETRESET, 10052}, {ECONNABORTED, 10053}, {EHOSTDOWN, 10064},
        {EHOSTUNREACH, 10065},  {EMFILE, 10024},    {ENOBUFS, 10055},      {ECANCELED, 995},
        {EADDRNOTAVAIL, 10049}, {EACCES, 10013},    {ENOTCONN, 10057},     {EXDEV, 10107},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(EngineStatus::FromErrno(row.system), row.engine) << row.system;
    }
}

TEST(EngineStatus, ResolverErrorsHaveTheEnginesNumbers)
{
    EXPECT_EQ(EngineStatus::FromResolver(EAI_NONAME), 11001);
    EXPECT_EQ(EngineStatus::FromResolver(EAI_AGAIN), 11002);
    EXPECT_EQ(EngineStatus::FromResolver(EAI_FAIL), 11003);
    EXPECT_EQ(EngineStatus::FromResolver(EAI_NODATA), 11001);
    EXPECT_EQ(EngineStatus::FromResolver(EAI_FAMILY), 10047);
    EXPECT_EQ(EngineStatus::FromResolver(12345), 10107);
    errno = ECONNREFUSED;
    EXPECT_EQ(EngineStatus::FromResolver(EAI_SYSTEM), 10061);
}

TEST(EngineStatus, EachKnownNumberHasWords)
{
    const struct {
        int status;
        const char* title;
        const char* description;
    } rows[] = {
        {10051, "0x00002743 Network is unreachable",
         "This usually means the local software knows no route to reach the remote host."},
        {10052, "0x00002744 Network dropped connection on reset",
         "The connection has been broken due to keep-alive activity detecting a failure while the operation "
         "was in "
         "progress."},
        {10053, "0x00002745 Software caused connection abort",
         "An established connection was aborted by the software in your host computer, possibly due to a "
         "data "
         "transmission time-out or protocol error."},
        {10054, "0x00002746 Connection reset by peer",
         "An existing connection was forcibly closed by the remote host. This normally results if the peer "
         "application on the remote host is suddenly stopped, the host is rebooted, the host or remote "
         "network "
         "interface is disabled"},
        {10060, "0x0000274c Connection timed out",
         "A connection attempt failed because the connected party did not properly respond after a period of "
         "time, "
         "or the established connection failed because the connected host has failed to respond."},
        {10061, "0x0000274d Connection refused",
         "No connection could be made because the target computer actively refused it. This usually results "
         "from "
         "trying to connect to a service that is inactive on the foreign host\u2014that is, one with no "
         "server "
         "application running."},
        {10064, "0x00002750 Host is down", "A socket operation failed because the destination host is down."},
        {10065, "0x00002751 No route to host", "A socket operation was attempted to an unreachable host."},
        {11001, "0x00002af9 Host not found", "No such host is known."},
        {995, "0x000003e3 Operation aborted", "An operation was canceled."},
        {123, "0x0000007b Invalid name",
         "A name holds a line break or a zero character. No server can be asked for it."},
        {7, "0x00000007 Unknown error", "No additional information is available"},
        {0, "0x00000000 Unknown error", "No additional information is available"},
        {-1, "0xffffffff Unknown error", "No additional information is available"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(EngineStatus::GetTitle(row.status), QString::fromUtf8(row.title));
        EXPECT_EQ(EngineStatus::GetDescription(row.status), QString::fromUtf8(row.description));
    }
}

TEST(EngineStatus, WhateverEndsATaskHasWordsThatHelp)
{
    std::set<int> statuses = {
        EngineStatus::UnknownReply,
        EngineStatus::InvalidName,
        EngineStatus::Aborted,
        EngineStatus::MessageTooLong,
        EngineStatus::ProtocolNotSupported,
        EngineStatus::ConnectionReset,
        EngineStatus::NoBufferSpace,
        EngineStatus::TimedOut,
        EngineStatus::UnreadablePasv,
        EngineStatus::UntrustedServer,
        EngineStatus::TlsNotOffered,
        EngineStatus::TlsDemanded,
        EngineStatus::TlsFailed,
    };
    // What the system has to say about a connection.
    for (const int error : {ECONNREFUSED, ETIMEDOUT, ECONNRESET, EPIPE, ENETUNREACH, ENETRESET, ECONNABORTED,
                            EHOSTDOWN, EHOSTUNREACH, EMFILE, ENFILE, ENOBUFS, ENOMEM, EADDRNOTAVAIL, EACCES,
                            EPERM, ENETDOWN, EAFNOSUPPORT, EXDEV}) {
        statuses.insert(EngineStatus::FromErrno(error));
    }
    for (const int error : {EAI_NONAME, EAI_AGAIN, EAI_FAIL, EAI_NODATA, EAI_FAMILY, EAI_MEMORY}) {
        statuses.insert(EngineStatus::FromResolver(error));
    }
    const QString none = EngineStatus::GetWords(0);
    for (const int status : statuses) {
        EXPECT_NE(EngineStatus::GetWords(status), none) << status;
        EXPECT_NE(EngineStatus::GetDescription(status), EngineStatus::GetDescription(0)) << status;
    }
}

TEST(EngineStatus, AThrowWritesATraceLineFirst)
{
    CTraceRecorder recorder;
    EXPECT_THROW(ThrowTraced("Send, WSASend throws: ", 10054), int);
    EXPECT_THROW(ThrowTracedLiterally("Send, WSAWaitForMultipleEvents aborted", 995), int);
    const std::vector<QString> expected = {QStringLiteral("\"Send, WSASend throws: \"10054"),
                                           QStringLiteral("_T(\"Send, WSAWaitForMultipleEvents aborted\")")};
    EXPECT_EQ(recorder.GetLines(), expected);
}
