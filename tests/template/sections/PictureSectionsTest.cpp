#include "template/sections/PictureSections.h"

#include "PageRun.h"

namespace {

std::string Picture(const std::string& id, const std::string& more = {})
{
    return "<%picture id=\"" + id + "\" height=\"1\" width=\"2\" href=\"\"" + more + "%>";
}

std::string Reference(const std::string& id, const std::string& reference, const std::string& more = {})
{
    return Picture(id, " image_reference=\"" + reference + "\"" + more);
}

std::string BlockSize(const std::string& size)
{
    return " reference_block_size=\"" + size + "\"";
}

// The ids and files of the pictures that a page shows: "a=0 b=1".
std::string Shown(const std::string& bytes, CTestIterator& iterator, int32_t pageIndex = 0)
{
    const Page page = ParsePage(bytes);
    const QString text = QString::fromStdString(GeneratePage(*page, iterator, pageIndex));
    QStringList list;
    for (const QString& piece : text.split(QStringLiteral("{picture "), Qt::SkipEmptyParts)) {
        QString number = piece.section(QStringLiteral("|photo"), 1);
        number.truncate(number.indexOf(QLatin1Char('.')));
        list += piece.section(QLatin1Char('|'), 0, 0) + QLatin1Char('=') + number;
    }
    return list.join(QLatin1Char(' ')).toStdString();
}

} // namespace

TEST(TemplatePicture, HandsItsAttributesToTheGenerator)
{
    const struct {
        const char* page;
        const char* expected;
    } rows[] = {
        {R"(<%picture id="a" height="h" width="w" href="t"%>)", "{picture a|t|h|w|own|no alt|photo0.jpg}"},
        {R"(<%picture id="a" height="" width="-1" href="" alt=""%>)", "{picture a|||-1|own|alt=|photo0.jpg}"},
        {R"(<%picture id="A" height="1" width="2" href="" alt="<%=a.title%>"%>)",
         "{picture A||1|2|own|alt=Photo 0|photo0.jpg}"},
        {R"(<%picture id="a" height="1" width="2" href="" image_reference="2"%>)",
         "{picture a||1|2|reference|no alt|photo2.jpg}"},
        {R"(<%picture id="a" href="<%=page.file_name%>" width="10" height="10"%>)",
         "{picture a|index.html|10|10|own|no alt|photo0.jpg}"},
        // A block size alone makes no reference.
        {R"(<%picture id="a" height="1" width="2" href="" reference_block_size="2"%>)",
         "{picture a||1|2|own|no alt|photo0.jpg}"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Generated(row.page), row.expected) << row.page;
    }
}

TEST(TemplatePicture, EvaluatesItsAttributesInOrder)
{
    CTestIterator iterator;
    iterator.echoesGallery = true;
    EXPECT_EQ(Generated(R"(<%picture alt="<%=gallery.alt%>" width="<%=gallery.width%>" id="<%=gallery.id%>" )"
                        R"(height="<%=gallery.height%>" href="<%=gallery.href%>" )"
                        R"(image_reference="<%=gallery.reference%>" )"
                        R"(reference_block_size="<%=gallery.block%>"%>)",
                        iterator),
              "{picture [id]|[href]|[height]|[width]|reference|alt=[alt]|photo0.jpg}");
    const std::vector<QString> expected = {
        QStringLiteral("gallery.id"),    QStringLiteral("gallery.reference"),
        QStringLiteral("gallery.block"), QStringLiteral("gallery.id"),
        QStringLiteral("gallery.href"),  QStringLiteral("gallery.height"),
        QStringLiteral("gallery.width"), QStringLiteral("gallery.alt"),
    };
    EXPECT_EQ(iterator.asked, expected);
}

TEST(TemplatePicture, BindsAnOwnPictureOrAReference)
{
    const struct {
        std::string page;
        const char16_t* bound;
    } rows[] = {
        {Picture("Photo"), u"Photo"},
        {Picture("M\xc3\xbcller"), u"M\u00fcller"},
        {Picture(""), u""},
        {Reference("r", "-1"), u"r -1 0"},
        {Reference("r", ""), u"r 0 0"},
        {Reference("r", "abc"), u"r 0 0"},
        {Reference("r", "+3x"), u"r 3 0"},
        {Reference("r", "99999999999"), u"r 2147483647 0"},
        {Reference("r", "1", BlockSize("10")), u"r 1 10"},
        {Reference("r", "1", BlockSize("")), u"r 1 0"},
        {Reference("r", "1", BlockSize("0")), u"r 1 0"},
        {Reference("r", "1", BlockSize("x")), u"r 1 0"},
        {Picture("a<%=page.number%>"), u"a1"},
    };
    for (const auto& row : rows) {
        CTestIterator iterator;
        Generated(row.page, iterator);
        EXPECT_EQ(iterator.bound, std::vector<QString>{QString::fromUtf16(row.bound)}) << row.page;
    }
}

TEST(TemplatePicture, PagesShowThePicturesInOrder)
{
    const std::string page = Picture("a") + Picture("b") + Picture("c");
    CTestIterator iterator(8);
    EXPECT_EQ(Shown(page, iterator, 0), "a=0 b=1 c=2");
    EXPECT_EQ(Shown(page, iterator, 1), "a=3 b=4 c=5");
    EXPECT_EQ(Shown(page, iterator, 2), "a=6 b=7");
    EXPECT_TRUE(iterator.IsLastPage());
    EXPECT_EQ(iterator.GetPageCount(), 3);
    EXPECT_EQ(Shown(page, iterator, 3), "");
}

TEST(TemplatePicture, SurplusSectionsOfTheLastPageWriteNothing)
{
    CTestIterator iterator(1);
    EXPECT_EQ(Generated(Picture("a") + "-" + Picture("b") + "-" + Picture("c"), iterator),
              "{picture a||1|2|own|no alt|photo0.jpg}--");
    // Nothing is evaluated for them either.
    iterator.asked.clear();
    Generated(Picture("a") + Picture("b", " alt=\"<%=gallery.alt%>\""), iterator);
    EXPECT_TRUE(iterator.asked.empty());
}

TEST(TemplatePicture, AMissingOwnPictureStopsThoseBehindItAMissingReferenceDoesNot)
{
    CTestIterator iterator(2);
    EXPECT_EQ(Shown(Picture("a") + Picture("b") + Picture("c") + Reference("r", "-2"), iterator), "a=0 b=1");
    EXPECT_EQ(Shown(Picture("a") + Reference("r", "5") + Picture("b"), iterator), "a=0 b=1");
    EXPECT_EQ(Shown(Picture("a") + Reference("r", "-5") + Picture("b"), iterator), "a=0 b=1");
}

TEST(TemplatePicture, TheSameIdTwiceIsOnePicture)
{
    CTestIterator iterator(4);
    const std::string page = Picture("a") + Picture("A") + Picture("b");
    EXPECT_EQ(Shown(page, iterator, 0), "a=0 A=0 b=1");
    EXPECT_EQ(iterator.GetPicturesPerPage(), 2);
    EXPECT_EQ(Shown(page, iterator, 1), "a=2 A=2 b=3");
    // The first entry of an id stands, whatever comes after it.
    EXPECT_EQ(Shown(Picture("a") + Reference("a", "3"), iterator), "a=0 a=0");
}

TEST(TemplatePicture, AVariableReachesAPictureThatStandsBehindIt)
{
    EXPECT_EQ(Generated("<%=photo1.title%>,<%=PHOTO2.Index%>," + Picture("Photo1") + Picture("photo2")),
              "Photo 0,1,{picture Photo1||1|2|own|no alt|photo0.jpg}"
              "{picture photo2||1|2|own|no alt|photo1.jpg}");
    CTestIterator empty(0);
    EXPECT_EQ(Generated("<%=a.title%>" + Picture("a"), empty), "");
}

TEST(TemplatePicture, AReferenceCountsFromThePageOrFromItsBlock)
{
    const std::string own = Picture("a") + Picture("b") + Picture("c") + Picture("d");
    CTestIterator iterator(100);
    const struct {
        std::string reference;
        int32_t page;
        const char* expected;
    } rows[] = {
        {Reference("r", "0"), 3, "r=12"},
        {Reference("r", "-1"), 2, "r=7"},
        {Reference("r", "-1"), 3, "r=11"},
        {Reference("r", "-1"), 0, ""},
        {Reference("r", "99"), 0, "r=99"},
        {Reference("r", "100"), 0, ""},
        {Reference("r", "0", BlockSize("10")), 2, "r=0"},
        {Reference("r", "0", BlockSize("10")), 3, "r=10"},
        {Reference("r", "0", BlockSize("10")), 4, "r=10"},
        {Reference("r", "0", BlockSize("10")), 5, "r=20"},
        {Reference("r", "3", BlockSize("10")), 4, "r=13"},
        {Reference("r", "0", BlockSize("1")), 3, "r=12"},
        {Reference("r", "1", BlockSize("0")), 3, "r=13"},
        {Reference("r", "1", BlockSize("")), 3, "r=13"},
    };
    for (const auto& row : rows) {
        const std::string shown = Shown(row.reference + own, iterator, row.page);
        const std::string expected(row.expected);
        EXPECT_EQ(shown.substr(0, shown.find(expected.empty() ? "a=" : " a=")), expected)
            << row.reference << row.page;
        EXPECT_EQ(iterator.GetPicturesPerPage(), 4);
    }
}
