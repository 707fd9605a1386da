#include "ftpengine/commands/PasvResponse.h"

#include <arpa/inet.h>

namespace {

// "192.168.1.2:5001", or the number that is thrown.
std::string Parsed(const std::string& reply)
{
    try {
        const sockaddr_in address = ParsePasvResponse(reply);
        EXPECT_EQ(address.sin_family, AF_INET);
        char text[INET_ADDRSTRLEN] = {};
        ::inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
        return std::string(text) + ':' + std::to_string(ntohs(address.sin_port));
    } catch (int error) {
        return std::to_string(error);
    }
}

} // namespace

TEST(PasvResponse, ReadsTheAddressOrFails)
{
    const struct {
        const char* reply;
        const char* expected;
    } rows[] = {
        {"227 Entering Passive Mode (192,168,1,2,19,137).", "192.168.1.2:5001"},
        {"227 Entering Passive Mode (192,168,1,2,19,137).\r\n", "192.168.1.2:5001"},
        {"227 (one) (192,168,1,2,19,137)", "192.168.1.2:5001"}, // the last brackets
        {"227 ( 10, 0, 0, 1, 0, 21 )", "10.0.0.1:21"},
        {"227 (0,0,0,0,0,0)", "0.0.0.0:0"},
        {"227 (255,255,255,255,255,255)", "255.255.255.255:65535"},
        {"227 (1,2,3,4,5,6,7)", "1.2.3.4:1286"},
        {"227 (1,2,3,4,5,6x)", "1.2.3.4:1286"},
        {"227 Entering Passive Mode 192,168,1,2,19,137", "11004"},
        {"227 (192,168,1,2,19)", "11004"},
        {"227 (192,168,1,2,19,)", "11004"},
        {"227 (192,168,1,2,,137)", "11004"},
        {"227 (192.168.1.2.19.137)", "11004"},
        {"227 (192 ,168,1,2,19,137)", "11004"},
        {"227 (256,168,1,2,19,137)", "11004"},
        {"227 (-1,168,1,2,19,137)", "11004"},
        {"227 (99999999999999999999,1,1,1,1,1)", "11004"},
        {"227 )192,168,1,2,19,137(", "11004"},
        {"227 (192,168,1,2,19,137", "11004"},
        {"227 ()", "11004"},
        {"227 (", "11004"},
        {"", "11004"},
        {"229 Entering Extended Passive Mode (|||6446|)", "11004"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Parsed(row.reply), row.expected) << row.reply;
    }
    EXPECT_EQ(Parsed(std::string("227 (1,2,3,4,5,\0006)", 18)), "11004");
}

TEST(PasvResponse, ReadsThePortOfTheExtendedFormOrFails)
{
    const struct {
        const char* reply;
        int expected; // the port, or the number that is thrown
    } rows[] = {
        {"229 Entering Extended Passive Mode (|||6446|)", 6446},
        {"229 Entering Extended Passive Mode (|||6446|).\r\n", 6446},
        {"229 (a) (!!!21!)", 21},
        {"229 (|||65535|)", 65535},
        {"229 (|||65536|)", -11004},
        {"229 (|||-1|)", -11004},
        {"229 (|||6446)", -11004},
        {"229 (||6446|)", -11004},
        {"229 (|1|192.0.2.1|6446|)", -11004}, // the address is the control connection's
        {"229 (||||)", -11004},
        {"229 (", -11004},
        {"229 |||6446|", -11004},
        {"", -11004},
    };
    for (const auto& row : rows) {
        int port = 0;
        try {
            port = ParseEpsvResponse(row.reply);
        } catch (int error) {
            port = -error;
        }
        EXPECT_EQ(port, row.expected) << row.reply;
    }
}
