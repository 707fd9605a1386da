#include "ftpengine/sftp/SftpPackets.h"

#include <QStringList>

#include "ftpengine/messages/EngineStatus.h"

namespace {

std::string Hex(const CSftpRequest& request, uint32_t id)
{
    std::string bytes;
    request.AppendTo(bytes, id);
    return QByteArray::fromStdString(bytes).toHex(' ').toStdString();
}

std::string FromHex(const char* text)
{
    return QByteArray::fromHex(text).toStdString();
}

template <class Action>
int NumberThrownBy(const Action& action)
{
    try {
        action();
    } catch (int number) {
        return number;
    }
    return 0;
}

} // namespace

TEST(SftpPackets, ARequestIsItsLengthTypeNumberAndFields)
{
    EXPECT_EQ(Hex(CSftpRequest(SftpType::Init).AddUint32(3), 77), "00 00 00 05 01 00 00 00 03");
    EXPECT_EQ(Hex(CSftpRequest(SftpType::RealPath).AddString("."), 7),
              "00 00 00 0a 10 00 00 00 07 00 00 00 01 2e");
    EXPECT_EQ(Hex(CSftpRequest(SftpType::Write).AddString("h").AddUint64(0x0102030405060708).AddString(""),
                  0xfffffffe),
              "00 00 00 16 06 ff ff ff fe 00 00 00 01 68 01 02 03 04 05 06 07 08 00 00 00 00");
    EXPECT_EQ(Hex(CSftpRequest(SftpType::MkDir).AddString("d").AddPermissions(0755), 1),
              "00 00 00 12 0e 00 00 00 01 00 00 00 01 64 00 00 00 04 00 00 01 ed");
}

TEST(SftpPackets, AttributesHoldWhatTheirFlagsSay)
{
    const struct {
        const char* bytes;
        const char* expected; // size, permissions, time; "-" for what isn't told
        bool isDirectory;
        bool isLink;
    } rows[] = {
        {"00000000", "- - -", false, false},
        {"00000001 0000000100000002", "4294967298 - -", false, false},
        {"00000002 00000001 00000002", "- - -", false, false},
        {"00000004 000041ed", "- 40755 -", true, false},
        {"00000004 0000a1ff", "- 120777 -", false, true},
        {"00000004 000081a4", "- 100644 -", false, false},
        {"00000008 00000005 ffffffff", "- - 4294967295", false, false},
        {"0000000f 0000000000000003 00000001 00000002 000081a4 00000005 00000006", "3 100644 6", false,
         false},
        {"80000000 00000002 00000001 61 00000000 00000000 00000001 62", "- - -", false, false},
    };
    for (const auto& row : rows) {
        const std::string bytes = FromHex(row.bytes);
        CSftpFields fields(bytes);
        const SftpAttributes found = fields.TakeAttributes();
        const auto shown = [](const auto& value, int base) {
            return value ? QString::number(*value, base) : QStringLiteral("-");
        };
        EXPECT_EQ(QStringList({shown(found.size, 10), shown(found.permissions, 8), shown(found.modified, 10)})
                      .join(QLatin1Char(' ')),
                  QString::fromLatin1(row.expected))
            << row.bytes;
        EXPECT_TRUE(fields.IsAtEnd()) << row.bytes;
        EXPECT_EQ(found.IsDirectory(), row.isDirectory) << row.bytes;
        EXPECT_EQ(found.IsLink(), row.isLink) << row.bytes;
    }
}

TEST(SftpPackets, WhatIsCutOffAnywhereIsUnreadable)
{
    const std::string names = FromHex("00000001 00000001 61 00000002 6c73 0000000f 0000000000000003 00000001 "
                                      "00000002 000081a4 00000005 00000006");
    EXPECT_EQ((SftpAnswer{.type = SftpType::Name, .fields = names}).ReadNames().size(), 1u);
    for (std::size_t size = 0; size < names.size(); ++size) {
        const SftpAnswer cut{.type = SftpType::Name, .fields = names.substr(0, size)};
        EXPECT_EQ(NumberThrownBy([&] { cut.ReadNames(); }), EngineStatus::UnknownReply) << size;
    }
    // Lengths far beyond the end.
    for (const char* bytes : {"ffffffff", "ffffffff 61", "7fffffff 00000001"}) {
        const std::string text = FromHex(bytes);
        EXPECT_EQ(NumberThrownBy([&] { CSftpFields(text).TakeString(); }), EngineStatus::UnknownReply);
    }
    const SftpAnswer many{.type = SftpType::Name, .fields = FromHex("ffffffff")};
    EXPECT_EQ(NumberThrownBy([&] { many.ReadNames(); }), EngineStatus::UnknownReply);
}

TEST(SftpPackets, AStatusMayComeWithoutWords)
{
    const SftpAnswer bare{.type = SftpType::Status, .fields = FromHex("00000004")};
    EXPECT_EQ(bare.ReadStatus()->code, 4u);
    EXPECT_EQ(bare.ReadStatus()->text, "");
    const SftpAnswer full{.type = SftpType::Status, .fields = FromHex("00000003 00000002 6e6f 00000000")};
    EXPECT_EQ(full.ReadStatus()->text, "no");
    const SftpAnswer other{.type = SftpType::Handle, .fields = FromHex("00000000")};
    EXPECT_FALSE(other.ReadStatus().has_value());
    EXPECT_EQ(NumberThrownBy([&] { other.ReadNames(); }), EngineStatus::UnknownReply);
}

TEST(SftpPackets, ExtensionsAreReadInPairs)
{
    const std::string bytes = FromHex("00000001 61 00000001 31 00000001 62 00000000");
    const auto extensions = ReadExtensions(CSftpFields(bytes));
    EXPECT_EQ(extensions.size(), 2u);
    EXPECT_EQ(extensions.at("a"), "1");
    EXPECT_EQ(extensions.at("b"), "");
    EXPECT_TRUE(ReadExtensions(CSftpFields({})).empty());
}
