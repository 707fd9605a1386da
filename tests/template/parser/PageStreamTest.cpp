#include "template/parser/PageStream.h"

#include "common/Text.h"
#include "support/ScratchFolder.h"

TEST(PageStream, OpensRegularFilesOnly)
{
    const CScratchFolder folder;
    EXPECT_TRUE(OpenPageFile(folder.Write(QStringLiteral("p\u00e4ge.html"), "x")).good());
    EXPECT_FALSE(OpenPageFile(folder.Path(QStringLiteral("missing.html"))).good());
    EXPECT_FALSE(OpenPageFile(folder.Path()).good());
    EXPECT_FALSE(OpenPageFile(QStringLiteral("/dev/zero")).good());
    EXPECT_FALSE(OpenPageFile(QString()).good());
}

TEST(PageStream, AFailedReadEndsTheInput)
{
    const CScratchFolder folder;
    std::ifstream stream(Narrow(folder.Path())); // a folder opens, but reading it fails
    EXPECT_EQ(ReadPageByte(stream), std::nullopt);
    EXPECT_FALSE(stream.good());
    std::ifstream peeked(Narrow(folder.Path()));
    EXPECT_EQ(PeekPageByte(peeked), std::nullopt);
}

TEST(MarkupBytes, AreThoseOfTheCLocale)
{
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        EXPECT_EQ(IsSpace(c), byte == ' ' || (byte >= 9 && byte <= 13)) << byte;
        EXPECT_EQ(IsLetter(c), (byte >= 65 && byte <= 90) || (byte >= 97 && byte <= 122)) << byte;
        EXPECT_EQ(IsQuote(c), byte == 34 || byte == 39) << byte;
    }
}
