#include "ftpengine/secrets/SecretText.h"

#include <fstream>
#include <sstream>
#include <string>

namespace {

// The block of /proc/self/smaps that holds the address; empty if there is none.
std::string MappingOf(const void* address)
{
    std::ifstream maps("/proc/self/smaps");
    std::string block;
    bool isInside = false;
    for (std::string line; std::getline(maps, line);) {
        unsigned long begin = 0;
        unsigned long end = 0;
        char dash = 0;
        std::istringstream head(line);
        if (line.find('-') != std::string::npos && head >> std::hex >> begin >> dash >> end && dash == '-') {
            const auto wanted = reinterpret_cast<unsigned long>(address);
            isInside = begin <= wanted && wanted < end;
        }
        if (isInside) {
            block += line + '\n';
        }
    }
    return block;
}

} // namespace

TEST(SecretText, HoldsTheTextInUtf8)
{
    const struct {
        QString text;
        std::string bytes;
    } rows[] = {
        {QString(), ""},
        {QStringLiteral("correct horse"), "correct horse"},
        {QStringLiteral("\u00fc\u20ac\U0001f600"), "\xc3\xbc\xe2\x82\xac\xf0\x9f\x98\x80"},
        {QString(20'000, QLatin1Char('x')), std::string(20'000, 'x')},
    };
    for (const auto& row : rows) {
        const CSecretText secret(row.text);
        EXPECT_EQ(secret.GetBytes(), row.bytes);
        EXPECT_EQ(secret.GetSize(), row.bytes.size());
        EXPECT_EQ(secret.IsEmpty(), row.bytes.empty());
    }
}

TEST(SecretText, CopiesShareOneMemory)
{
    CSecretText copy;
    {
        const CSecretText first(QStringLiteral("secret"));
        copy = first;
        EXPECT_EQ(static_cast<const void*>(copy.GetBytes()), first.GetBytes());
    }
    EXPECT_STREQ(copy.GetBytes(), "secret");
    EXPECT_EQ(copy, CSecretText(QStringLiteral("secret")));
    EXPECT_FALSE(copy == CSecretText(QStringLiteral("secre")));
    EXPECT_EQ(copy.GetText(), QStringLiteral("secret"));
    EXPECT_EQ(CSecretText().GetText(), QString());
}

TEST(SecretText, CoreDumpsLeaveItOut)
{
    const CSecretText secret(QStringLiteral("secret"));
    const std::string mapping = MappingOf(secret.GetBytes());
    const std::size_t flags = mapping.find("VmFlags:");
    ASSERT_NE(flags, std::string::npos) << mapping;
    // "dd": do not include in core dumps (proc(5)).
    EXPECT_NE((mapping.substr(flags) + ' ').find(" dd "), std::string::npos) << mapping.substr(flags);
}

TEST(SecretText, AWipedTextIsZerosForWhoeverLooksAtItsMemory)
{
    QString own = QString::fromLatin1("password");
    const QChar* const memory = own.constData();
    WipeText(own);
    EXPECT_TRUE(own.isEmpty());
    ASSERT_EQ(own.constData(), memory);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(memory[i], QChar(u'\0')) << i;
    }
}

TEST(SecretText, ATextThatOthersShareStaysWithThem)
{
    QString text = QString::fromLatin1("password");
    const QString sharing = text;
    WipeText(text);
    EXPECT_EQ(text, QString());
    EXPECT_EQ(sharing, QStringLiteral("password"));
    QString constant = QStringLiteral("a literal"); // in memory that can't be written
    WipeText(constant);
    EXPECT_EQ(constant, QString());
}

TEST(SecretText, AWipedTextOfBytesIsZeros)
{
    std::string own = "PASS a password of more than a few bytes\r\n";
    const char* const memory = own.data();
    WipeText(own);
    EXPECT_TRUE(own.empty());
    EXPECT_EQ(own.data(), memory);
    EXPECT_EQ(std::string(memory, 40), std::string(40, '\0'));
}
