#include "shell/web/PageAddress.h"

#include <gtest/gtest.h>

TEST(PageAddress, ALinkIsReadAsThePageWroteIt)
{
    const QUrl page = PageAddress(QStringLiteral("view1"), 7);
    const struct {
        const char* written;
        const char* expected;
    } rows[] = {
        {"gallery1.htm#top", "gallery1.htm"},
        {"#top", ""},
        {"", ""},
        {"../index.html", "../index.html"},
        {"../12/index.html", "../12/index.html"},
        {"12/index0.html", "12/index0.html"},
        {"index1.html?page=2#x", "index1.html?page=2"},
        {"?a=b", "?a=b"},
        {"./a.html", "a.html"},
        {"a b.html", "a b.html"},
        {"%C3%A4%23.html", "\xc3\xa4#.html"},
        {"/home/a.html", "/home/a.html"},
        {"http://example.org/a#b", "http://example.org/a"},
        {"mailto:a@example.org", "mailto:a@example.org"},
    };
    for (const auto& row : rows) {
        const QUrl link = page.resolved(QUrl(QString::fromUtf8(row.written)));
        EXPECT_EQ(LinkAsWritten(link), QString::fromUtf8(row.expected)) << row.written;
    }
}

TEST(PageAddress, OnlyAPagesOwnAddressIsThatOfAPage)
{
    const QUrl page = PageAddress(QStringLiteral("view1"), 7);
    EXPECT_EQ(PageRevision(page), 7);
    EXPECT_EQ(page.host(), QStringLiteral("view1"));
    for (const char* other : {"a.html", "../a.html", "?a", "/", "/home/a.jpg", "/~page/x/"}) {
        EXPECT_EQ(PageRevision(page.resolved(QUrl(QString::fromLatin1(other)))), -1) << other;
    }
    EXPECT_EQ(PageRevision(ShellAddress(QStringLiteral("view1"))), -1);
}

// The browser reads ahead by addresses without what stands after "#".
TEST(PageAddress, ArtworkHasAnAddressOfItsOwn)
{
    const struct {
        const char* written;
        const char* expected;
    } rows[] = {
        {"<img src=\"res://vistorama/#2/#271\">", "<img src=\"res://vistorama/2/271\">"},
        {"res:///usr/bin/vistorama/#2/#305 res://a/#2/#1", "res:///usr/bin/vistorama/2/305 res://a/2/1"},
        {"<a href=\"res://a\">#2/#3</a>", "<a href=\"res://a\">#2/#3</a>"},
        {"res://a/#2/#x", "res://a/#2/#x"},
        {"#2/#3", "#2/#3"},
        {"", ""},
        {"\xff\xc3\xa4 res://a/#2/#270\xff", "\xff\xc3\xa4 res://a/2/270\xff"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(WithArtworkPaths(row.written), QByteArray(row.expected)) << row.written;
    }
    for (const char* address : {"res://vistorama/#2/#271", "res://vistorama/2/271", "res://x/y z/#2/#271"}) {
        EXPECT_EQ(ArtworkNumber(QUrl(QString::fromLatin1(address))), QStringLiteral("271")) << address;
    }
}
