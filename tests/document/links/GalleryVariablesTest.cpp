#include "document/links/GalleryVariables.h"

#include "TestProject.h"

namespace {

const QString GalleryObject = QStringLiteral("gallery");
const QString PageObject = QStringLiteral("page");

// Root 0 with layout "plain" on index.html and style "blue", and child 1.
CGallery& MakeFamily(CTestProject& test)
{
    test.AddStandard();
    test.settings->Write(CSettingsStore::Scope::User, QStringLiteral("Corvane/Vistorama"),
                         QStringLiteral("BannerServer"), QStringLiteral("http://banner"));
    test.settings->Write(CSettingsStore::Scope::User, QStringLiteral("Corvane/Vistorama"),
                         QStringLiteral("BannerFeed"), QStringLiteral("feed"));
    CGallery& root = test.NewGallery();
    root.SetTemplate(QStringLiteral("plain.xml"));
    test.project.AddChildGallery(0);
    return root;
}

} // namespace

TEST(GalleryVariables, TheObjectGalleryAnswersItsTable)
{
    CTestProject test;
    CGallery& root = MakeFamily(test);
    root.SetObjectVariable(GalleryObject, QStringLiteral("Name"), CVariant(QStringLiteral("Top")));
    CGallery& child = *test.project.FindGallery(1);
    child.SetTemplatePage(QStringLiteral("picture.html"));
    const struct {
        CGallery& gallery;
        const char* name;
        const char* inPreview;
        const char* published;
    } rows[] = {
        {root, "css", "blue.css", "blue.css"},
        {root, "styledir", "~/program/Styles/blue/", "blue/"},
        {root, "stylesubdir", "blue", "blue"},
        {root, "name", "Top", "Top"},
        {root, "layout_name", "Layout plain", "Layout plain"},
        {root, "banner_params", "\n<PARAM NAME=\"FlashVars\" VALUE=\"loadURL=feed\">", "empty"},
        {root, "banner_url", "~/program/banner.swf", "http://banner"},
        {root, "template_directory", "~/program/Templates/plain/", "~/program/Templates/plain/"},
        {root, "parent_name", "", ""},
        {root, "parent_url", "index.html", "index.html"},
        {root, "parent_path", "", ""},
        {root, "NAME", "Top", "Top"},
        {root, "missing", "empty", "empty"},
        {child, "parent_name", "Top", "Top"},
        {child, "parent_url", "../index.html", "../index.html"},
        {child, "parent_path", "<a href=\"../index.html\">Top</a> \\ ",
         "<a href=\"../index.html\">Top</a> \\ "},
    };
    for (const auto& row : rows) {
        test.project.SetPreviewMode(true);
        const QString name = QString::fromUtf8(row.name);
        EXPECT_EQ(test.ValueOf(row.gallery, GalleryObject, name), QString::fromUtf8(row.inPreview))
            << row.name;
        test.project.SetPreviewMode(false);
        EXPECT_EQ(test.ValueOf(row.gallery, GalleryObject, name), QString::fromUtf8(row.published))
            << row.name;
    }
}

TEST(GalleryVariables, WithoutLayoutsAndStylesTheirValuesAreEmpty)
{
    CTestProject test;
    CGallery& root = test.NewGallery();
    for (const char* name : {"css", "styledir", "stylesubdir", "layout_name", "template_directory"}) {
        EXPECT_EQ(test.ValueOf(root, GalleryObject, QString::fromUtf8(name)), QStringLiteral("empty"))
            << name;
    }
    EXPECT_EQ(root.GetPageVariable(QStringLiteral("p"), 0, QStringLiteral("css")), std::nullopt);
}

TEST(GalleryVariables, TheBannerIsEmptyWhereTheInstallationSuppliesNone)
{
    CTestProject test;
    CGallery& root = test.NewGallery();
    test.project.SetPreviewMode(false);
    EXPECT_EQ(test.ValueOf(root, GalleryObject, QStringLiteral("banner_url")), QString());
}

TEST(GalleryVariables, TheDisplayNameIsTheFirstOfThreeThatIsSet)
{
    CTestProject test;
    CGallery& root = test.NewGallery();
    test.project.Save(test.Path(QStringLiteral("a.b.gallery")));
    EXPECT_EQ(root.GetDisplayName(), QStringLiteral("a"));
    root.SetObjectVariable(GalleryObject, QStringLiteral("name"), CVariant(QStringLiteral("n")));
    EXPECT_EQ(root.GetDisplayName(), QStringLiteral("n"));
    root.SetObjectVariable(GalleryObject, QStringLiteral("display_name"), CVariant(QStringLiteral("d")));
    EXPECT_EQ(root.GetDisplayName(), QStringLiteral("d"));
    // A name that is no text, or taken back by an empty value, is not set.
    root.SetObjectVariable(GalleryObject, QStringLiteral("display_name"), CVariant());
    root.SetObjectVariable(GalleryObject, QStringLiteral("name"), CVariant(7));
    EXPECT_EQ(root.GetDisplayName(), QStringLiteral("a"));
}

TEST(GalleryVariables, ObjectsAnswerOrAreUnknown)
{
    CTestProject test;
    test.AddStandard();
    CGallery& root = test.NewGallery(2);
    root.SetTemplatePage(QStringLiteral("p.html"));
    root.GetLayout().SetPageNumber(3);
    root.SetPageVariable(QStringLiteral("p"), 3, QStringLiteral("Title"), CVariant(QStringLiteral("third")));
    root.SetObjectVariable(QStringLiteral("Content"), QStringLiteral("Note"),
                           CVariant(QStringLiteral("listed")));
    root.SetObjectVariable(QStringLiteral("page"), QStringLiteral("note"),
                           CVariant(QStringLiteral("ignored")));
    root.GetTexts().advertisements[QStringLiteral("p.html")][QStringLiteral("top")] = QStringLiteral("buy");
    const struct {
        const char* object;
        const char* name;
        const char* expected;
    } rows[] = {
        {"page", "title", "third"},
        {"PAGE", "missing", "empty"},
        {"page", "note", "empty"},
        {"content", "images_count", "#2"},
        {"content", "min_creation_date", "date:43831.5"},
        {"content", "max_creation_date", "date:43831.5"},
        {"CONTENT", "note", "listed"},
        {"content", "missing", "empty"},
        {"advertisement", "top", "buy"},
        {"advertisement", "TOP", "buy"},
        {"Advertisement", "bottom", ""},
        {"nonsense", "name", "not found, empty"},
        {"", "name", "not found, empty"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(test.ValueOf(root, QString::fromUtf8(row.object), QString::fromUtf8(row.name)),
                  QString::fromUtf8(row.expected))
            << row.object << "." << row.name;
    }
}

TEST(GalleryVariables, AMissingAdvertisementIsCreatedEmptyOnThePageInWork)
{
    CTestProject test;
    CGallery& root = test.NewGallery();
    root.SetTemplatePage(QStringLiteral("p.html"));
    // A look at the values enters nothing.
    const CGalleryVariables values(root, test.project);
    EXPECT_EQ(values.FindObjectVariable(QStringLiteral("advertisement"), QStringLiteral("Top")),
              CVariant(QStringLiteral("")));
    EXPECT_TRUE(root.GetTexts().advertisements.empty());
    const auto value = root.GetObjectVariable(QStringLiteral("advertisement"), QStringLiteral("Top"));
    ASSERT_EQ(value, CVariant(QStringLiteral("")));
    EXPECT_FALSE(value->GetString().isNull());
    root.GetObjectVariable(QStringLiteral("advertisement"), QStringLiteral("TOP"));
    const auto& texts = root.GetTexts().advertisements[QStringLiteral("p.html")];
    EXPECT_EQ(texts.count(QStringLiteral("Top")), 1u);
    EXPECT_EQ(texts.size(), 1u);
}

TEST(GalleryVariables, APageAnswersWithItsOwnStyle)
{
    CTestProject test;
    test.AddStandard();
    const QString red = test.AddStyle(QStringLiteral("red"));
    CGallery& root = test.NewGallery();
    root.SetStyle(QStringLiteral("blue.xml"));
    root.GetLayout().SetPageStyle(QStringLiteral("own"), red);
    root.GetLayout().SetPageStyle(QStringLiteral("gone"), QStringLiteral("/gone.xml"));
    root.SetPageVariable(QStringLiteral("own"), 2, QStringLiteral("x"), CVariant(5));
    const struct {
        const char* page;
        int number;
        const char* name;
        const char* inPreview;
        const char* published;
    } rows[] = {
        {"own", 0, "css", "red.css", "red.css"},
        {"other", 0, "css", "blue.css", "blue.css"},
        {"gone", 0, "css", "blue.css", "blue.css"},
        {"own", 0, "StyleDir", "~/program/Styles/red/", "red/"},
        {"own", 0, "stylesubdir", "red", "red"},
        {"own", 0, "common_styledir", "~/program/Styles/Common/", "Common/"},
        {"own", 2, "X", "#5", "#5"},
        {"own", 1, "x", "not found", "not found"},
        {"own", 2, "y", "not found", "not found"},
        {"OWN", 2, "x", "not found", "not found"},
    };
    for (const auto& row : rows) {
        for (const bool inPreview : {true, false}) {
            test.project.SetPreviewMode(inPreview);
            const auto value =
                root.GetPageVariable(QString::fromUtf8(row.page), row.number, QString::fromUtf8(row.name));
            QString text = value ? Described(*value) : QStringLiteral("not found");
            text.replace(test.scratch.Path(), QStringLiteral("~/"));
            EXPECT_EQ(text, QString::fromUtf8(inPreview ? row.inPreview : row.published))
                << row.page << " " << row.name;
        }
    }
    root.SetTemplatePage(QStringLiteral("own.html"));
    EXPECT_EQ(test.ValueOf(root, GalleryObject, QStringLiteral("css")), QStringLiteral("red.css"));
    EXPECT_EQ(test.ValueOf(root, PageObject, QStringLiteral("common_styledir")), QStringLiteral("Common/"));
}
