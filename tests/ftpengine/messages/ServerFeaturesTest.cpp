#include "ftpengine/messages/ServerFeatures.h"

namespace {

std::string Names(std::string_view reply)
{
    const ServerFeatures features = ParseFeatures(reply);
    std::string names;
    names += features.utf8 ? "utf8 " : "";
    names += features.mlst ? "mlst " : "";
    names += features.epsv ? "epsv " : "";
    names += features.size ? "size " : "";
    names += features.mdtm ? "mdtm " : "";
    names += features.rest ? "rest " : "";
    return names;
}

} // namespace

TEST(ServerFeatures, AreReadLineByLine)
{
    const struct {
        const char* reply;
        const char* expected;
    } rows[] = {
        {"211-Features:\r\n UTF8\r\n EPSV\r\n SIZE\r\n211 End\r\n", "utf8 epsv size "},
        {"211-Features:\r\n MLST type*;size*;modify*;\r\n REST STREAM\r\n MDTM\r\n211 End\r\n",
         "mlst mdtm rest "},
        {"211-x\r\n mlsd\r\n utf8\r\n211 x\r\n", "utf8 mlst "},
        {"211-UTF8\r\n211 SIZE\r\n", ""}, // no features of their own
        {"211-x\r\n SIZES\r\n XUTF8\r\n211 x\r\n", ""},
        {"211-x\n SIZE\n211 x\n", "size "},
        {"211 no features\r\n", ""},
        {" SIZE", "size "},
        {" ", ""},
        {"", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Names(row.reply), row.expected) << row.reply;
    }
}
