#pragma once

#include <QString>

// The engine's own numbers for what ends a task. They are the same on every platform, stand in results and
// are shown to people; failures travel inside the engine as a thrown int with one of them.
namespace EngineStatus {

inline constexpr int UnknownReply = 6;       // a reply outside the known groups, also none at all
inline constexpr int InvalidName = 123;      // a name that would break the line of a command
inline constexpr int Aborted = 995;          // by the abort event
inline constexpr int MessageTooLong = 10040; // a reply or listing without end
inline constexpr int ProtocolNotSupported = 10043;
inline constexpr int ConnectionReset = 10054;
inline constexpr int NoBufferSpace = 10055; // memory, threads or descriptors are used up
inline constexpr int TimedOut = 10060;
inline constexpr int HostNotFound = 11001;
inline constexpr int TryAgain = 11002; // the resolver has got no answer
inline constexpr int UnreadablePasv = 11004;
// Of the connection's protection; a person decides what comes next.
inline constexpr int UntrustedServer = 12045; // the result holds the identity, with its doubt
inline constexpr int TlsNotOffered = 12046;   // nothing secret has been sent
inline constexpr int TlsDemanded = 12047;     // the server takes no login without
inline constexpr int TlsFailed = 12157;       // no common version or cipher, or broken off

// From errno of a socket call, and from the result of getaddrinfo. A number without a counterpart becomes
// 10107, a failed system call.
int FromErrno(int error);
int FromResolver(int error);

// For people: "Connection timed out"; "0x0000274c Connection timed out"; and a sentence about it.
QString GetWords(int status);
QString GetTitle(int status);
QString GetDescription(int status);

} // namespace EngineStatus

// Throwing such a number. Every failure writes a trace line first; none holds what is sent or received. The
// quotes and "_T" belong to the lines: those who look for a failure search for them in this form.
[[noreturn]] void ThrowTraced(const char* text, int number);          // "text"number
[[noreturn]] void ThrowTracedLiterally(const char* text, int number); // _T("text")
void TraceNumber(const char* text, int number);
void TraceLiterally(const char* text);
