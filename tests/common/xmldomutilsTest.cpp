#include "common/xmldomutils.h"

#include "common/Exceptions.h"
#include "support/ScratchFolder.h"

namespace {

QString DescriptionOfFailedLoad(const QString& path)
{
    try {
        LoadDocument(path);
    } catch (const CUnexpectedException& error) {
        EXPECT_EQ(error.GetCaption(),
                  QStringLiteral("Unexpected error occured.\nSource file: xmldomutils(32)"));
        EXPECT_EQ(error.GetAdvice(),
                  QStringLiteral("Please send detailed information to customer support service."));
        return error.GetDescription();
    }
    return QStringLiteral("loaded");
}

} // namespace

TEST(XmlDocument, IsSavedBareAndReadBack)
{
    const CScratchFolder scratch;
    const QString path = scratch.Path(QStringLiteral("p.gallery"));
    const auto document = CreateDocument();
    CXmlElement root = document->CreateRoot("project");
    root.SetAttribute("version", QStringLiteral("2.0"));
    CXmlElement child = root.AppendChild("folder");
    child.SetAttribute("path", QStringLiteral("/M\u00fcller & S\u00f6hne/\"x\"\n<y>"));
    child.SetAttribute("count", -7);
    document->Save(path);
    EXPECT_EQ(scratch.Read(QStringLiteral("p.gallery")),
              QByteArray("<project version=\"2.0\"><folder path=\"/M\xc3\xbcller &amp; "
                         "S\xc3\xb6hne/&quot;x&quot;&#10;&lt;y>\" "
                         "count=\"-7\"/></project>"));

    const auto loaded = LoadDocument(path);
    EXPECT_EQ(loaded->GetPath(), path);
    const CXmlElement folder = loaded->GetRoot().FindChild("folder");
    EXPECT_EQ(GetAttributeText(folder, "path").GetString(),
              QStringLiteral("/M\u00fcller & S\u00f6hne/\"x\"\n<y>"));
    EXPECT_EQ(GetAttributeLong(folder, "count"), -7);
}

TEST(XmlDocument, AMissingAttributeOrElementReadsAsEmptyAndZero)
{
    const auto document = CreateDocument();
    const CXmlElement root = document->CreateRoot("project");
    for (const CXmlElement& element : {root, root.FindChild("missing"), CXmlElement()}) {
        EXPECT_TRUE(GetAttributeText(element, "a").IsEmpty());
        EXPECT_EQ(GetAttributeLong(element, "a"), 0);
        EXPECT_TRUE(element.GetChildren("b").empty());
    }
    EXPECT_FALSE(root.FindChild("missing"));
    EXPECT_FALSE(CreateDocument()->GetRoot());
}

TEST(XmlDocument, ElementsAreFoundAtAnyDepthInDocumentOrder)
{
    const CScratchFolder scratch;
    const auto document = LoadDocument(scratch.Write(
        QStringLiteral("a.xml"), "<a><f n=\"1\"/><b><f n=\"2\"><f n=\"3\"/></f></b><c/><f n=\"4\"/></a>"));
    QString found;
    for (const CXmlElement& element : document->FindAll("f")) {
        found += GetAttributeText(element, "n").GetString();
    }
    EXPECT_EQ(found, QStringLiteral("1234"));
}

TEST(XmlDocument, AFailedLoadNamesPathReasonAndLine)
{
    const CScratchFolder scratch;
    const QString broken = scratch.Write(QStringLiteral("broken.xml"), "<a>\n<b>\n</c>\n</a>");
    EXPECT_EQ(DescriptionOfFailedLoad(broken),
              QStringLiteral(
                  "Error occured during xml file parsing.\n File name: %1\n Error reason: Start-end tags "
                  "mismatch. Line: 3")
                  .arg(broken));
    const QString missing = scratch.Path(QStringLiteral("missing.xml"));
    EXPECT_EQ(
        DescriptionOfFailedLoad(missing),
        QStringLiteral("Error occured during xml file parsing.\n File name: %1\n Error reason: The file does "
                       "not exist. Line: 0")
            .arg(missing));
    for (const char* bytes : {"", "just text", "<a", "<a b=>", "<a></a", "\xff\xfe"}) {
        const QString path = scratch.Write(QStringLiteral("bad.xml"), bytes);
        EXPECT_TRUE(DescriptionOfFailedLoad(path).contains(path)) << bytes;
    }
    EXPECT_TRUE(DescriptionOfFailedLoad(scratch.Path()).contains(QStringLiteral("Is a directory")));
}

TEST(XmlDocument, NumbersAreReadAsTheFormatAllows)
{
    const CScratchFolder scratch;
    const auto document = LoadDocument(scratch.Write(
        QStringLiteral("a.xml"), "<a n=\"12\" blank=\" -3 \" real=\"2.6\" color=\"4294967295\" "
                                 "big=\"4294967296\" text=\"x1\" empty=\"\" nan=\"nan\" inf=\"-inf\"/>"));
    const CXmlElement root = document->GetRoot();
    EXPECT_EQ(GetAttributeLong(root, "n"), 12);
    EXPECT_EQ(GetAttributeLong(root, "blank"), -3);
    EXPECT_EQ(GetAttributeLong(root, "real"), 3);
    EXPECT_EQ(static_cast<uint32_t>(GetAttributeLong(root, "color")), 4294967295u);
    for (const char* name : {"big", "text", "empty", "nan", "inf"}) {
        try {
            GetAttributeLong(root, name);
            FAIL() << name;
        } catch (const CUnexpectedException& error) {
            EXPECT_TRUE(error.GetDescription().contains(document->GetPath()));
            EXPECT_TRUE(
                error.GetDescription().contains(QStringLiteral("attribute '%1'").arg(QLatin1String(name))));
        }
    }
}

TEST(XmlDocument, DeepNestingIsNoDanger)
{
    const CScratchFolder scratch;
    const QByteArray deep = QByteArray("<a>").repeated(100000) + QByteArray("</a>").repeated(100000);
    const auto document = LoadDocument(scratch.Write(QStringLiteral("deep.xml"), deep));
    EXPECT_EQ(document->FindAll("a").size(), 100000u);
}
