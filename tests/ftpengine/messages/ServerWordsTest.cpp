#include "ftpengine/messages/ServerWords.h"

TEST(ServerWords, AreCleanedOfWhatAScreenWouldObey)
{
    const struct {
        QString words;
        QString expected;
    } rows[] = {
        {QStringLiteral("230 in\r\n"), QStringLiteral("230 in")},
        {QStringLiteral("a\r\nb\nc\rd"), QStringLiteral("a\nb\nc\nd")},
        {QStringLiteral("a\tb"), QStringLiteral("a b")},
        {QStringLiteral("\x1b[31mred\x07"), QStringLiteral("[31mred")},
        {QStringLiteral("a") + QChar(0) + QStringLiteral("b") + QChar(0x7f) + QStringLiteral("c") +
             QChar(0x9b) + QStringLiteral("d"),
         QStringLiteral("abcd")},
        {QStringLiteral("a\u202egpj.exe"), QStringLiteral("agpj.exe")},
        {QStringLiteral("\u2066a\u2069\u200f\u061cb\u200b\ufeff"), QStringLiteral("ab")},
        {QStringLiteral("a\u2028b"), QStringLiteral("ab")},
        {QStringLiteral("Gr\u00fc\u00dfe \u96ea \u05d0"), QStringLiteral("Gr\u00fc\u00dfe \u96ea \u05d0")},
        {QStringLiteral("\r\n\r\n"), QString()},
        {QString(), QString()},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CleanServerWords(row.words), row.expected);
    }
}

TEST(ServerWords, ADemandForTlsIsToldFromOtherRefusals)
{
    const struct {
        int code;
        const char* text;
        bool expected;
    } rows[] = {
        {530, "530 Non-anonymous sessions must use encryption.\r\n", true},
        {550, "550 SSL/TLS required on the control channel\r\n", true},
        {421, "421 Sorry, cleartext sessions and weak ciphers are not accepted on this server.\r\n", true},
        {421, "421 tls please\r\n", true},
        {534, "534 no\r\n", true},
        {533, "533 no\r\n", true},
        {522, "522 Data connections must be protected.\r\n", true},
        {530, "530 Login incorrect.\r\n", false},
        {421, "421 Too many users\r\n", false},
        {550, "550 No such directory\r\n", false},
        {500, "500 TLS is not understood\r\n", false},
        {553, "553 tls.jpg: no such file\r\n", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(DemandsTls({.code = row.code, .text = QString::fromLatin1(row.text)}), row.expected)
            << row.text;
    }
}
