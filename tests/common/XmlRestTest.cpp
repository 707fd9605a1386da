#include "common/XmlRest.h"

#include "support/ScratchFolder.h"

namespace {

const XmlNames Known = {{"a"}, {"known"}};

std::unique_ptr<CXmlDocument> Loaded(const CScratchFolder& scratch, const QByteArray& xml)
{
    return LoadDocument(scratch.Write(QStringLiteral("in.xml"), xml));
}

// What an element with these bytes becomes that is written with the rest.
QByteArray Written(const CXmlRest& rest)
{
    const CScratchFolder scratch;
    const auto document = CreateDocument();
    CXmlElement root = document->CreateRoot("e");
    root.SetAttribute("a", 1);
    root.AppendChild("known").SetAttribute("name", QStringLiteral("n"));
    rest.WriteTo(root);
    document->Save(scratch.Path(QStringLiteral("out.xml")));
    return scratch.Read(QStringLiteral("out.xml"));
}

} // namespace

TEST(XmlRest, HoldsWhatIsNotKnownAndWritesItAfterWhatIs)
{
    const struct {
        const char* read;
        const char* written;
    } rows[] = {
        {R"(<e a="2"><known/></e>)", R"(<e a="1"><known name="n"/></e>)"},
        {R"(<e b="x &amp; &quot;y&quot;" a="2"/>)",
         R"(<e a="1" b="x &amp; &quot;y&quot;"><known name="n"/></e>)"},
        {R"(<e><new c="1">text<deep/></new><known/></e>)",
         R"(<e a="1"><known name="n"/><new c="1">text<deep/></new></e>)"},
        {R"(<e><new name="n"/><new name="n"/></e>)",
         R"(<e a="1"><known name="n"/><new name="n"/><new name="n"/></e>)"},
        {R"(<e>text<!-- remark --></e>)", R"(<e a="1"><known name="n"/></e>)"},
    };
    for (const auto& row : rows) {
        const CScratchFolder scratch;
        const auto document = Loaded(scratch, row.read);
        EXPECT_EQ(Written(CXmlRest(document->GetRoot(), Known)).toStdString(), row.written);
    }
}

TEST(XmlRest, KeepsAChildOfAKnownNameUntilOneOfItsOwnNameIsWritten)
{
    const CScratchFolder scratch;
    const auto document = Loaded(scratch, R"(<e><known name="n" odd="1"/><known name="m" odd="2"/></e>)");
    CXmlRest rest(document->GetRoot(), Known);
    EXPECT_TRUE(rest.IsEmpty());
    for (const CXmlElement& child : document->GetRoot().GetChildren("known")) {
        rest.Keep(child);
    }
    EXPECT_FALSE(rest.IsEmpty());
    EXPECT_EQ(Written(rest).toStdString(), R"(<e a="1"><known name="n"/><known name="m" odd="2"/></e>)");
}

TEST(XmlRest, OfAnElementThatIsNotThereIsEmpty)
{
    EXPECT_TRUE(CXmlRest(CXmlElement(), Known).IsEmpty());
    EXPECT_EQ(CXmlRest(), CXmlRest(CXmlElement(), Known));
}

TEST(XmlRest, HoldsAnElementNestedDeeperThanTheStackIs)
{
    const CScratchFolder scratch;
    QByteArray deep;
    for (int level = 0; level < 200'000; ++level) {
        deep += "<d>";
    }
    for (int level = 0; level < 200'000; ++level) {
        deep += "</d>";
    }
    const auto document = Loaded(scratch, "<e>" + deep + "</e>");
    EXPECT_TRUE(Written(CXmlRest(document->GetRoot(), Known)).contains("<d><d><d/></d></d>"));
}

TEST(XmlNumbers, ANumberThatIsNoneIsNothing)
{
    const CScratchFolder scratch;
    const auto document = Loaded(scratch, R"(<e a="12" b=" 1.6 " c="x" d="" e="4294967295" f="1e99"/>)");
    const CXmlElement root = document->GetRoot();
    EXPECT_EQ(FindAttributeLong(root, "a"), 12);
    EXPECT_EQ(FindAttributeLong(root, "b"), 2);
    EXPECT_EQ(FindAttributeLong(root, "e"), -1);
    for (const char* name : {"c", "d", "f", "missing"}) {
        EXPECT_EQ(FindAttributeLong(root, name), std::nullopt) << name;
    }
}

TEST(XmlRest, APartGoesToTheChildrenOfItsTagAndKeys)
{
    const CScratchFolder scratch;
    const auto document = Loaded(
        scratch,
        R"(<e><known name="n" a="9" odd="&lt;1&gt;"><x/></known><known name="m" odd="2"/><known name="n"/></e>)");
    CXmlRest rest(document->GetRoot(), Known);
    for (const CXmlElement& child : document->GetRoot().GetChildren("known")) {
        rest.KeepPart(child, {{"name", "a"}, {}}, {"name", "b"});
    }
    EXPECT_TRUE(rest.IsEmpty());
    EXPECT_EQ(Written(rest).toStdString(), R"(<e a="1"><known name="n" odd="&lt;1>"><x/></known></e>)");
}
