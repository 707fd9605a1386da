#include "ftpengine/session/FTPReplyValues.h"

#include "ftpengine/messages/FTPReply.h"

TEST(FTPReplyValues, APathStandsInQuotationMarks)
{
    const struct {
        const char* reply;
        const char* expected; // null: a refusal
    } rows[] = {
        {"257 \"/\"\r\n", "/"},
        {"257 \"/home/anna b\" is the current directory\r\n", "/home/anna b"},
        {"257 \"/a \"\"b\"\"\" is current\r\n", "/a \"b\""},
        {"257 \"/a\"\"\"\r\n", "/a\""},
        {"257 \"/a \"b\" c\"\r\n", "/a "},
        {"257 \"\"\r\n", nullptr},
        {"257 \"/a\r\n", nullptr},
        {"257 /a\r\n", nullptr},
        {"", nullptr},
    };
    for (const auto& row : rows) {
        if (row.expected == nullptr) {
            EXPECT_THROW(ReadQuotedPath(row.reply), FTPReply) << row.reply;
        } else {
            EXPECT_EQ(ReadQuotedPath(row.reply), row.expected) << row.reply;
        }
    }
}

TEST(FTPReplyValues, ASizeIsANumber)
{
    EXPECT_EQ(ReadSize("213 12\r\n"), 12);
    EXPECT_EQ(ReadSize("213 0"), 0);
    EXPECT_EQ(ReadSize("213 5000000000\r\n"), 5000000000);
    for (const char* reply :
         {"213 -1\r\n", "213 x\r\n", "213 12x\r\n", "213 \r\n", "213", "", "213 99999999999999999999\r\n"}) {
        EXPECT_EQ(ReadSize(reply), std::nullopt) << reply;
    }
}
