#include "document/galleries/GalleryIterator.h"

#include <sstream>

#include "TestProject.h"
#include "common/FileSystem.h"
#include "effects/ImageEffectCompound.h"
#include "template/contracts/ContentGeneratorStringConverter.h"
#include "template/sections/CompoundTemplateSection.h"

namespace {

// An iterator on page "p.html" with so many pictures bound: ids "0", "1" ...
class CBoundIterator {
public:
    CBoundIterator(CGallery& gallery, int places, int page)
    {
        iterator.Init(gallery, QStringLiteral("p"), QStringLiteral(".html"), page);
        iterator.Reset();
        for (int place = 0; place < places; ++place) {
            iterator.BindPicture(QString::number(place));
        }
        iterator.SetPageIndex(page);
    }

    // The file names that a page's picture sections show, "-" where there is none.
    QString Shown(int sections)
    {
        QStringList names;
        for (int section = 0; section < sections; ++section) {
            QString path;
            names +=
                iterator.HasPicture() ? ExtractLastName(iterator.GetPicturePath(path)) : QStringLiteral("-");
            iterator.NextPicture();
        }
        return names.join(QLatin1Char(' '));
    }

    CGalleryIterator iterator;
};

QString Answer(CGalleryIterator& iterator, const QString& object, const QString& name)
{
    CVariant value;
    const bool found = iterator.GetVariable(object, name, value);
    return (found ? QString() : QStringLiteral("false ")) + Described(value);
}

} // namespace

TEST(GalleryIterator, APageShowsItsShareOfThePictures)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(9);
    EXPECT_EQ(CBoundIterator(gallery, 3, 2).Shown(3), QStringLiteral("7.jpg 8.jpg 9.jpg"));
    EXPECT_EQ(CBoundIterator(gallery, 3, 0).Shown(4), QStringLiteral("1.jpg 2.jpg 3.jpg -"));
}

TEST(GalleryIterator, TheLastPageEndsWithThePictures)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(8);
    EXPECT_EQ(CBoundIterator(gallery, 3, 2).Shown(3), QStringLiteral("7.jpg 8.jpg -"));
    CBoundIterator past(gallery, 3, 3);
    EXPECT_EQ(past.Shown(3), QStringLiteral("- - -"));
    EXPECT_EQ(past.iterator.GetCurrentPicture(), nullptr);
    QString path = QStringLiteral("old");
    EXPECT_EQ(past.iterator.GetPicturePath(path), QString());
    EXPECT_EQ(path, QString());
}

TEST(GalleryIterator, CountsItsPages)
{
    const struct {
        int pictures;
        int places;
        int page;
        int pageCount;
        bool isLast;
    } rows[] = {
        {7, 3, 0, 3, false}, {7, 3, 1, 3, false},         {7, 3, 2, 3, true},  {6, 3, 1, 2, true},
        {6, 6, 0, 1, true},  {0, 3, 0, 0, true},          {7, 0, 0, 0, false}, {0, 0, 0, 0, true},
        {7, 3, 9, 3, true},  {7, 3, 2147483647, 3, true},
    };
    for (const auto& row : rows) {
        CTestProject test;
        CBoundIterator bound(test.NewGallery(row.pictures), row.places, row.page);
        EXPECT_EQ(bound.iterator.GetPicturesPerPage(), row.places);
        EXPECT_EQ(bound.iterator.GetPictureCount(), row.pictures);
        EXPECT_EQ(bound.iterator.GetPageCount(), row.pageCount) << row.pictures << " by " << row.places;
        EXPECT_EQ(bound.iterator.IsLastPage(), row.isLast) << row.pictures << " by " << row.places;
        EXPECT_EQ(bound.iterator.GetPageIndex(), row.page);
    }
}

TEST(GalleryIterator, ASecondSectionOfOneIdShowsTheSamePictureAndTakesNoPlace)
{
    CTestProject test;
    CBoundIterator bound(test.NewGallery(9), 2, 1);
    bound.iterator.Reset();
    for (const char* id : {"a", "A", "b", "a"}) {
        bound.iterator.BindPicture(QString::fromUtf8(id));
    }
    bound.iterator.SetPageIndex(1);
    EXPECT_EQ(bound.iterator.GetPicturesPerPage(), 2);
    EXPECT_EQ(bound.Shown(5), QStringLiteral("3.jpg 3.jpg 4.jpg 3.jpg -"));
}

TEST(GalleryIterator, AReferencePointsFromTheFirstPictureOfThePage)
{
    const struct {
        int page;
        int offset;
        int modulo;
        const char* expected; // with 2 places on a page
    } rows[] = {
        {2, 0, 0, "5.jpg"},  {2, 0, 1, "5.jpg"},
        {2, 1, 0, "6.jpg"},  {2, -1, 0, "4.jpg"},
        {2, 0, 3, "4.jpg"},  {2, 1, 3, "5.jpg"},
        {0, -1, 0, "-"},     {4, 1, 0, "-"},
        {2, 0, -3, "4.jpg"}, {2147483647, 2147483647, 0, "-"},
    };
    for (const auto& row : rows) {
        CTestProject test;
        CBoundIterator bound(test.NewGallery(9), 2, row.page);
        bound.iterator.Reset();
        bound.iterator.BindPictureReference(QStringLiteral("Ref"), row.offset, row.modulo);
        bound.iterator.BindPicture(QStringLiteral("a"));
        bound.iterator.BindPicture(QStringLiteral("b"));
        bound.iterator.BindPictureReference(QStringLiteral("ref"), 5, 5);
        bound.iterator.SetPageIndex(row.page);
        EXPECT_EQ(bound.iterator.GetPicturesPerPage(), 2);
        EXPECT_EQ(bound.Shown(1), QString::fromUtf8(row.expected)) << row.offset << " " << row.modulo;
    }
}

TEST(GalleryIterator, TheIndexOfAPictureIsRoundedDownToItsBlock)
{
    CTestProject test;
    CBoundIterator bound(test.NewGallery(1), 4, 3);
    EXPECT_EQ(bound.iterator.GetPictureIndex(0, 0), 12);
    EXPECT_EQ(bound.iterator.GetPictureIndex(2, 10), 12);
    EXPECT_EQ(bound.iterator.GetPictureIndex(0, 10), 10);
    EXPECT_EQ(bound.iterator.GetPictureIndex(-13, 0), -1);
}

TEST(GalleryIterator, ResetForgetsWhatWasBoundSetPageIndexDoesNot)
{
    CTestProject test;
    CBoundIterator bound(test.NewGallery(9), 3, 0);
    bound.iterator.NextPicture();
    bound.iterator.SetPageIndex(1);
    EXPECT_EQ(bound.Shown(1), QStringLiteral("4.jpg"));
    bound.iterator.Reset();
    EXPECT_EQ(bound.iterator.GetPicturesPerPage(), 0);
    EXPECT_FALSE(bound.iterator.HasPicture());
}

TEST(GalleryIterator, WithoutNamesTakesThePageOfTheGallery)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    gallery.SetTemplatePage(QStringLiteral("q.htm"));
    gallery.GetLayout().SetPageNumber(3);
    gallery.SetQueryString(QStringLiteral("?x"));
    CGalleryIterator iterator;
    iterator.Init(gallery);
    EXPECT_EQ(iterator.GetPageIndex(), 3);
    EXPECT_EQ(iterator.GetPageFileName(0), QStringLiteral("q.htm"));
    EXPECT_EQ(iterator.GetPageFileName(3), QStringLiteral("q3.htm"));
    EXPECT_EQ(iterator.GetGalleryFileStem(), QStringLiteral("q3.htm?x"));
    CGalleryIterator named;
    named.Init(gallery, QStringLiteral("n"), QStringLiteral(".x"), 0);
    EXPECT_EQ(named.GetGalleryFileStem(), QStringLiteral("n0.x?x"));
    EXPECT_EQ(named.GetPageFileName(12), QStringLiteral("n12.x"));
}

TEST(GalleryIterator, LooksValuesUpByObjectAndName)
{
    CTestProject test;
    test.AddStandard();
    CGallery& gallery = test.NewGallery(5);
    gallery.SetPageVariable(QStringLiteral("p"), 1, QStringLiteral("title"),
                            CVariant(QStringLiteral("second")));
    gallery.SetPageVariable(QStringLiteral("p"), 0, QStringLiteral("title"),
                            CVariant(QStringLiteral("first")));
    gallery.SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("name"),
                              CVariant(QStringLiteral("g")));
    gallery.GetPictures().GetAt(3)->SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("fourth")));
    CBoundIterator bound(gallery, 3, 1);
    const struct {
        const char* object;
        const char* name;
        const char* expected;
    } rows[] = {
        {"page", "number", "#2"},
        {"page", "total_pages_count", "#2"},
        {"Page", "INDEX", "#1"},
        {"page", "file_name", "p1.html"},
        {"page", "file_name_base", "p"},
        {"page", "title", "second"},
        {"page", "css", "blue.css"},
        {"page", "missing", "false empty"},
        {"0", "title", "fourth"},
        {"0", "file_name", "4.jpg"},
        {"0", "missing", "false empty"},
        {"2", "file_name", "false empty"},
        {"0", "#picture.html", "false picture3.html"},
        {"0", "#unknown.html", "false empty"},
        {"2", "#picture.html", "false empty"},
        {"GALLERY", "NAME", "g"},
        {"gallery", "missing", "empty"},
        {"content", "images_count", "#5"},
        {"nonsense", "x", "false ERROR:Invalid object name: nonsense."},
        {"", "x", "false ERROR:Invalid object name: ."},
        {"3", "x", "false ERROR:Invalid object name: 3."},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Answer(bound.iterator, QString::fromUtf8(row.object), QString::fromUtf8(row.name)),
                  QString::fromUtf8(row.expected))
            << row.object << "." << row.name;
    }
    EXPECT_EQ(Answer(bound.iterator, QString(), QStringLiteral("x")),
              QStringLiteral("false ERROR:Invalid template variable syntax. Object name was not specified."));
    EXPECT_EQ(Answer(bound.iterator, QStringLiteral("page"), QString()), QStringLiteral("false empty"));
    CVariant value;
    EXPECT_TRUE(bound.iterator.GetPageProperty(0, QStringLiteral("title"), value));
    EXPECT_EQ(value.GetString(), QStringLiteral("first"));
    EXPECT_FALSE(bound.iterator.GetPageProperty(2, QStringLiteral("title"), value));
}

TEST(GalleryIterator, APageFileNameHasADigitFromPageOneOn)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    const struct {
        int page;
        const char* fileName;
        const char* number;
    } rows[] = {{0, "p.html", "#1"}, {3, "p3.html", "#4"}, {2147483647, "p2147483647.html", "#2147483647"}};
    for (const auto& row : rows) {
        CBoundIterator bound(gallery, 1, row.page);
        EXPECT_EQ(Answer(bound.iterator, QStringLiteral("page"), QStringLiteral("file_name")),
                  QString::fromUtf8(row.fileName));
        EXPECT_EQ(Answer(bound.iterator, QStringLiteral("page"), QStringLiteral("number")),
                  QString::fromUtf8(row.number));
    }
}

TEST(GalleryIterator, PropertiesOutsideTheGalleryAreFalse)
{
    CTestProject test;
    CBoundIterator bound(test.NewGallery(2), 1, 0);
    CVariant value;
    EXPECT_TRUE(bound.iterator.GetPictureProperty(1, QStringLiteral("file_name"), value));
    EXPECT_FALSE(bound.iterator.GetPictureProperty(2, QStringLiteral("file_name"), value));
    EXPECT_FALSE(bound.iterator.GetPictureProperty(-1, QStringLiteral("file_name"), value));
}

TEST(GalleryIterator, WritesValuesWhereItReadsThem)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(2);
    CBoundIterator bound(gallery, 1, 1);
    bound.iterator.BindPictureReference(QStringLiteral("past"), 5, 0);
    bound.iterator.BindPictureReference(QStringLiteral("before"), -5, 0);
    const QString name = QStringLiteral("Title");
    const auto set = [&](const char* object) {
        bound.iterator.SetVariable(QString::fromUtf8(object), name, CVariant(QString::fromUtf8(object)));
    };
    for (const char* object : {"page", "0", "past", "before", "gallery", "content", "nonsense"}) {
        set(object);
    }
    bound.iterator.SetVariable(QString(), name, CVariant(1));
    for (const char* object : {"page", "0", "gallery", "content"}) {
        EXPECT_EQ(Answer(bound.iterator, QString::fromUtf8(object), QStringLiteral("title")),
                  QString::fromUtf8(object));
    }
    EXPECT_EQ(gallery.GetPageVariable(QStringLiteral("p"), 1, name), CVariant(QStringLiteral("page")));
    EXPECT_EQ(gallery.GetPageVariable(QStringLiteral("p"), 0, name), std::nullopt);
    EXPECT_EQ(gallery.GetPictures().GetAt(1)->GetVariable(name), CVariant(QStringLiteral("0")));
    EXPECT_EQ(gallery.GetPictures().GetAt(0)->GetVariable(name), std::nullopt);
}

TEST(GalleryIterator, ThreeClassesOfPictureSizeHaveTheirOwnStamps)
{
    CTestProject test;
    CBoundIterator bound(test.NewGallery(), 0, 0);
    const auto slotOf = [&](int width, int height) {
        const auto effects = bound.iterator.GetEffectsForSize(width, height);
        return effects == bound.iterator.GetEffectsForSize(1, 1)       ? 0
               : effects == bound.iterator.GetEffectsForSize(300, 300) ? 1
                                                                       : 2;
    };
    const struct {
        int width;
        int height;
        int slot;
    } rows[] = {{199, 199, 0}, {200, 199, 1}, {199, 200, 1}, {199, 599, 1}, {599, 599, 1},
                {199, 700, 2}, {600, 10, 2},  {10, 600, 2},  {0, 0, 0}};
    for (const auto& row : rows) {
        EXPECT_EQ(slotOf(row.width, row.height), row.slot) << row.width << " by " << row.height;
    }
}

TEST(GalleryIterator, EachSizeClassHasItsWatermarkBelowItsSignature)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    gallery.GetImageStamps()[0].file = QStringLiteral("a"); // 97
    gallery.GetImageStamps()[2].file = QStringLiteral("b");
    gallery.GetTextStamps()[1].text = QStringLiteral("c");
    gallery.GetTextStamps()[2].text = QStringLiteral("d");
    // Settings without a file or a text are no stamp.
    gallery.GetImageStamps()[1].position = 5;
    gallery.GetTextStamps()[0].font_size = 20;
    CGalleryIterator iterator;
    iterator.Init(gallery);
    const auto nameAt = [&](int32_t width, int32_t height) {
        return iterator.GetEffectsForSize(width, height)->GetResultFileName(QStringLiteral("x.jpg"));
    };
    EXPECT_EQ(nameAt(199, 199), QStringLiteral("xg970as0.jpg"));
    EXPECT_EQ(nameAt(200, 199), QStringLiteral("xt990a525422.jpg"));
    EXPECT_EQ(nameAt(600, 100), QStringLiteral("xg980as0t1000a525422.jpg"));
}

TEST(GalleryIterator, AStampOutlivesItsIterator)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    gallery.GetTextStamps()[0].text = QStringLiteral("c");
    std::shared_ptr<const CImageEffectCompound> effects;
    {
        CGalleryIterator iterator;
        iterator.Init(gallery);
        effects = iterator.GetEffectsForSize(1, 1);
        gallery.GetTextStamps()[0].text = QStringLiteral("changed later");
    }
    EXPECT_EQ(effects->GetResultFileName(QStringLiteral("x.jpg")), QStringLiteral("xt990a525422.jpg"));
}

TEST(GalleryIterator, EachInitBeginsWithFreshStamps)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    CGalleryIterator iterator;
    iterator.Init(gallery);
    const auto before = iterator.GetEffectsForSize(1, 1);
    iterator.Init(gallery);
    EXPECT_NE(iterator.GetEffectsForSize(1, 1), before);
    EXPECT_EQ(iterator.GetEffectsForSize(1, 1)->GetResultFileName(QStringLiteral("a.jpg")),
              QStringLiteral("a.jpg"));
}

TEST(GalleryIterator, ServesAWholePage)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(5);
    std::istringstream page("<%picture id=\"a\" width=\"1\" height=\"1\" href=\"\"%>"
                            "<%picture id=\"b\" width=\"1\" height=\"1\" href=\"\"%>"
                            "<%=page.number%>/<%=page.total_pages_count%>: <%=a.file_name%> <%=b.file_name%>"
                            "<%=c.file_name%>");
    CCompoundTemplateSection tree;
    tree.Parse(page);
    CContentGeneratorStringConverter generator;
    CGalleryIterator iterator;
    iterator.Init(gallery, QStringLiteral("p"), QStringLiteral(".html"), 2);
    iterator.Reset();
    tree.Bind(iterator, generator);
    iterator.SetPageIndex(2);
    EXPECT_EQ(tree.GenerateToString(iterator, generator), "3/3: 5.jpg ERROR:Invalid object name: c.");
}

TEST(GalleryIterator, AnIdHidesAnObjectOfItsNameButNotThePage)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(3);
    CBoundIterator bound(gallery, 0, 0);
    for (const char* id : {"Photo", "Gallery", "Page"}) {
        bound.iterator.BindPicture(QString::fromUtf8(id));
    }
    bound.iterator.SetPageIndex(0);
    const QString fileName = QStringLiteral("file_name");
    EXPECT_EQ(Answer(bound.iterator, QStringLiteral("PHOTO"), fileName), QStringLiteral("1.jpg"));
    EXPECT_EQ(Answer(bound.iterator, QStringLiteral("gallery"), fileName), QStringLiteral("2.jpg"));
    EXPECT_EQ(Answer(bound.iterator, QStringLiteral("page"), fileName), QStringLiteral("p.html"));
    const QString title = QStringLiteral("title");
    bound.iterator.SetVariable(QStringLiteral("pHOTO"), title, CVariant(QStringLiteral("t")));
    bound.iterator.SetVariable(QStringLiteral("GALLERY"), title, CVariant(QStringLiteral("u")));
    EXPECT_EQ(gallery.GetPictures().GetAt(0)->GetVariable(title), CVariant(QStringLiteral("t")));
    EXPECT_EQ(gallery.GetPictures().GetAt(1)->GetVariable(title), CVariant(QStringLiteral("u")));
    EXPECT_EQ(test.ValueOf(gallery, QStringLiteral("gallery"), title), QStringLiteral("empty"));
}

TEST(GalleryIterator, OfAPictureAndAReferenceOfOneIdTheFirstCounts)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(9);
    CBoundIterator picture(gallery, 0, 0);
    picture.iterator.BindPicture(QStringLiteral("a"));
    picture.iterator.BindPictureReference(QStringLiteral("A"), 5, 0);
    picture.iterator.SetPageIndex(0);
    EXPECT_EQ(picture.iterator.GetPicturesPerPage(), 1);
    EXPECT_EQ(picture.Shown(2), QStringLiteral("1.jpg 1.jpg"));
    CBoundIterator reference(gallery, 0, 0);
    reference.iterator.BindPictureReference(QStringLiteral("a"), 5, 0);
    reference.iterator.BindPicture(QStringLiteral("A"));
    reference.iterator.SetPageIndex(0);
    EXPECT_EQ(reference.iterator.GetPicturesPerPage(), 0);
    EXPECT_EQ(reference.Shown(2), QStringLiteral("6.jpg 6.jpg"));
}
