#include "ftpengine/messages/ReplyAssembler.h"

namespace {

// The complete replies, each with "|" after it, and what is left.
std::string Taken(std::string_view bytes, std::size_t pieceSize)
{
    CReplyAssembler assembler;
    std::string taken;
    for (std::size_t at = 0; at < bytes.size(); at += pieceSize) {
        assembler.Append(bytes.substr(at, pieceSize));
        while (const auto reply = assembler.Take()) {
            taken += *reply + '|';
        }
    }
    return taken + assembler.TakeRest();
}

} // namespace

TEST(ReplyAssembler, CutsWhereAReplyEnds)
{
    const struct {
        const char* bytes;
        const char* expected;
    } rows[] = {
        {"", ""},
        {"220 ready\r\n", "220 ready\r\n|"},
        {"220 ready\n", "220 ready\n|"},
        {"220 ready", "220 ready"},
        {"150 a\r\n226 b\r\n", "150 a\r\n|226 b\r\n|"},
        {"220-a\r\n220-b\r\n220 c\r\n221 d\r\n", "220-a\r\n220-b\r\n220 c\r\n|221 d\r\n|"},
        {"220-a\r\n230 no end\r\n 220 nor here\r\n220 c\r\n2",
         "220-a\r\n230 no end\r\n 220 nor here\r\n220 c\r\n|2"},
        {"220-a\r\n220-b\r\n", "220-a\r\n220-b\r\n"},
        {"\r\n220 a\r\n", "\r\n|220 a\r\n|"},
        {"hello\r\n220 a\r\n", "hello\r\n|220 a\r\n|"},
    };
    for (const auto& row : rows) {
        for (const std::size_t pieceSize : {1u, 2u, 3u, 1000u}) {
            EXPECT_EQ(Taken(row.bytes, pieceSize), row.expected) << row.bytes << " by " << pieceSize;
        }
    }
}

TEST(ReplyAssembler, KnowsALineThatMayBeAllThereIs)
{
    const struct {
        const char* bytes;
        bool expected;
    } rows[] = {
        {"", false},          {"2", true},
        {"220 ready", true},  {"220-ready", false},
        {"220-a\r\n", false}, {"220-a\r\n220", false},
        {"hello", true},      {"220 a\r\n230", true},
    };
    for (const auto& row : rows) {
        CReplyAssembler assembler;
        assembler.Append(row.bytes);
        while (assembler.Take()) {
        }
        EXPECT_EQ(assembler.HasLineWithoutEnd(), row.expected) << row.bytes;
    }
}

TEST(ReplyAssembler, WhatHasBegunCanBePassedOver)
{
    CReplyAssembler assembler;
    assembler.PassOverBegun(); // nothing has
    assembler.Append("220 a\r\n220-");
    EXPECT_EQ(assembler.Take(), "220 a\r\n");
    EXPECT_EQ(assembler.Take(), std::nullopt);
    assembler.PassOverBegun();
    assembler.Append("b\r\n220 c\r\n200 d\r\n");
    EXPECT_EQ(assembler.Take(), "200 d\r\n");
    EXPECT_EQ(assembler.GetSize(), 0u);
}
