#include <clocale>
#include <limits>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include "TestProject.h"
#include "common/FileSystem.h"

namespace {

const QString GalleryObject = QStringLiteral("gallery");

// The project's file with the scratch folder written as "~", in both its spellings, and the project's id as
// "ID".
QByteArray Written(CTestProject& test, const CGalleryProject& project)
{
    QByteArray bytes = test.scratch.Read(QStringLiteral("site/My.gallery"));
    const QString folder = test.scratch.Path().chopped(1);
    return bytes.replace(folder.toUtf8(), "~")
        .replace(Lower(folder).toUtf8(), "~")
        .replace(project.GetId().toUtf8(), "ID");
}

QByteArray Saved(CTestProject& test)
{
    test.project.Save(test.ProjectPath());
    return Written(test, test.project);
}

// A project with something in every corner: root 2 with two pictures and child 5.
void FillProject(CTestProject& test)
{
    test.AddStandard();
    const QString red = test.AddStyle(QStringLiteral("red"));
    test.LoadXml("<project root_gallery_index=\"2\"><gallery index=\"2\"/><gallery index=\"5\"/></project>");
    CGallery& root = *test.project.GetRootGallery();
    root.SetTemplate(QStringLiteral("plain.xml"));
    root.SetStyle(red);
    root.AddPicture(test.MakePicture(QStringLiteral("a & b.jpg")));
    root.AddChild(5);
    root.AddPicture(test.MakePicture(QStringLiteral("M\u00fcnchen.jpg")));
    root.RotatePicture(2, false);
    root.GetPictures().GetAt(2)->SetNameSuffix(QStringLiteral("_2"));
    for (const int32_t position : {0, 2}) {
        root.GetPictures().GetAt(position)->SetVariable(QStringLiteral("addition_date"),
                                                        CVariant::Date(45000.1));
    }
    CPictureInfo& picture = *root.GetPictures().GetAt(0);
    picture.SetVariable(QStringLiteral("Title"), CVariant(QStringLiteral("<\"quoted\">")));
    picture.SetVariable(QStringLiteral("size"), CVariant(-7));
    picture.SetVariable(QStringLiteral("ratio"), CVariant::Real(0.1));
    picture.SetVariable(QStringLiteral("void"), CVariant());
    root.SetObjectVariable(QStringLiteral("content"), QStringLiteral("note"), CVariant(QStringLiteral("n")));
    root.SetPageVariable(QStringLiteral("index"), 0, QStringLiteral("head"), CVariant(QStringLiteral("h")));
    root.SetPageVariable(QStringLiteral("picture"), 12, QStringLiteral("head"), CVariant(1));
    root.SetObjectVariable(GalleryObject, QStringLiteral("Name"), CVariant(QStringLiteral("Top")));
    root.SetVisibilityMap({{QStringLiteral("logo"), false}, {QStringLiteral("date"), true}});
    root.GetImageStamps()[1] = {{.position = 5, .margin = 3}, QStringLiteral("/w.png"), 40};
    root.GetTextStamps()[2] = {
        {.position = 10, .margin = 4}, QStringLiteral("by me"), QStringLiteral("Arial"), 12, 3, 4278190335u};
    root.GetTexts().advertisements[QStringLiteral("index.html")][QStringLiteral("top")] =
        QStringLiteral("buy");
    test.project.AddFolder(test.Path(QStringLiteral("pictures")));
    test.project.SetRecentFolder(test.Path(QStringLiteral("pictures")));
    test.project.SetCurrentGallery(5);
    test.project.GetDeploySettings() = {.folder = QStringLiteral("/out"),
                                        .destination_kind = 1,
                                        .ftp_directory = QStringLiteral("/www"),
                                        .ftp_destination = 4,
                                        .redeploy_mode = 0,
                                        .open_browser_after_deploy = false};
}

const char* const StampsOfAnEmptyGallery =
    R"(<image_stamp index="0" position="0" margin="10" file="" transparency="0"/>)"
    R"(<image_stamp index="1" position="0" margin="10" file="" transparency="0"/>)"
    R"(<image_stamp index="2" position="0" margin="10" file="" transparency="0"/>)"
    R"(<text_stamp index="0" position="0" margin="10" font="MS Sans Serif" text="" font_size="8" font_style="0" color="0"/>)"
    R"(<text_stamp index="1" position="0" margin="10" font="MS Sans Serif" text="" font_size="8" font_style="0" color="0"/>)"
    R"(<text_stamp index="2" position="0" margin="10" font="MS Sans Serif" text="" font_size="8" font_style="0" color="0"/>)";

QByteArray ExpectedFullProject()
{
    const QByteArray date = "45000.0999999999985448084771633148193359375";
    return R"(<project version="2.0" root_gallery_index="2" current_gallery_index="5" id="ID">)"
           R"(<project_folders recent_folder="~/pictures"><folder path="~/pictures"/></project_folders>)"
           R"(<gallery index="2"><style template="~/program/templates/plain.xml" template_page="index.html" )"
           R"(css="~/program/styles/red.xml"/><picture_list>)"
           R"(<picture path="~/pictures/a &amp; b.jpg" angle="0"><picture_variable doubleVal=")" +
           date +
           R"(" name="addition_date" vt="7"/><picture_variable )"
           R"(doubleVal="0.1000000000000000055511151231257827021181583404541015625" name="ratio" vt="5"/>)"
           R"(<picture_variable lVal="-7" name="size" vt="3"/>)"
           R"(<picture_variable bstrVal="&lt;&quot;quoted&quot;>" name="title" vt="8"/>)"
           R"(<picture_variable name="void" vt="0"/></picture><picture index="5"/>)"
           R"(<picture path="~/pictures/)"
           "M\xc3\xbcnchen.jpg"
           R"(" angle="3" name_suffix="_2"><picture_variable doubleVal=")" +
           date +
           R"(" name="addition_date" vt="7"/></picture>)"
           R"(<picture_list_variable bstrVal="n" name="note" vt="8"/></picture_list>)"
           R"(<page name="index" index="0"><page_variable bstrVal="h" name="head" vt="8"/></page>)"
           R"(<page name="picture" index="12"><page_variable lVal="1" name="head" vt="3"/></page>)"
           R"(<project_variable bstrVal="Top" name="name" vt="8"/><page_visibility name="index.html">)"
           R"(<visible_element name="date" visible="1"/><visible_element name="logo" visible="0"/>)"
           R"(</page_visibility><page_style name="index" style="~/program/styles/red.xml"/>)"
           R"(<image_stamp index="0" position="0" margin="10" file="" transparency="0"/>)"
           R"(<image_stamp index="1" position="5" margin="3" file="/w.png" transparency="40"/>)"
           R"(<image_stamp index="2" position="0" margin="10" file="" transparency="0"/>)"
           R"(<text_stamp index="0" position="0" margin="10" font="MS Sans Serif" text="" font_size="8" font_style="0" color="0"/>)"
           R"(<text_stamp index="1" position="0" margin="10" font="MS Sans Serif" text="" font_size="8" font_style="0" color="0"/>)"
           R"(<text_stamp index="2" position="10" margin="4" font="Arial" text="by me" font_size="12" font_style="3" color="4278190335"/>)"
           R"(<advertisement name="top" value="buy" page="index.html"/></gallery>)"
           R"(<gallery index="5"><style template="~/program/templates/plain.xml" template_page="" )"
           R"(css="~/program/styles/blue.xml"/><picture_list/>)" +
           QByteArray(StampsOfAnEmptyGallery) +
           R"(</gallery><deploy_settings folder="/out" destination_kind="1" redeploy_mode="0" )"
           R"(ftp_destination="4" ftp_directory="/www" open_browser_after_deploy="0"/></project>)";
}

// "element" and "element attribute" for all that stand in the file.
QStringList NamesIn(const QByteArray& xml)
{
    std::set<QString> names;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const QString element = reader.name().toString();
        names.insert(element);
        for (const QXmlStreamAttribute& attribute : reader.attributes()) {
            names.insert(element + QLatin1Char(' ') + attribute.name().toString());
        }
    }
    EXPECT_FALSE(reader.hasError());
    return {names.begin(), names.end()};
}

QStringList QuotedIn(const QString& cell)
{
    static const QRegularExpression quoted(QStringLiteral("`(\\w+)`"));
    QStringList names;
    for (auto matches = quoted.globalMatch(cell); matches.hasNext();) {
        names += matches.next().captured(1);
    }
    return names;
}

// The same as the tables of a page of the documents tell it: a row that says the type of an attribute is
// about elements and the attribute, any other about elements.
QStringList NamesInTables(const QString& page)
{
    std::set<QString> names;
    for (const QString& line : page.split(QLatin1Char('\n'))) {
        const QStringList cells = line.split(QStringLiteral(" | "));
        if (!line.startsWith(QStringLiteral("| `")) || cells.size() < 4) {
            continue;
        }
        const bool isAttribute = QStringList{"integer", "text", "real"}.contains(cells[2]);
        for (const QString& element : QuotedIn(cells[0])) {
            names.insert(element);
            if (isAttribute) {
                names.insert(element + QLatin1Char(' ') + QuotedIn(cells[1]).value(0));
            }
        }
    }
    return {names.begin(), names.end()};
}

} // namespace

TEST(ProjectFile, IsWrittenToTheByte)
{
    CTestProject test;
    FillProject(test);
    EXPECT_EQ(Saved(test).toStdString(), ExpectedFullProject().toStdString());
}

TEST(ProjectFile, OfANewProjectHasSixStampsAndNoLayout)
{
    CTestProject test;
    test.NewGallery();
    EXPECT_EQ(Saved(test).toStdString(),
              (R"(<project version="2.0" root_gallery_index="0" current_gallery_index="0" id="ID">)"
               R"(<project_folders recent_folder="~/pictures"><folder path="~/pictures"/></project_folders>)"
               R"(<gallery index="0"><style template="" template_page="" css=""/><picture_list/>)" +
               QByteArray(StampsOfAnEmptyGallery) +
               R"(</gallery><deploy_settings folder="~/site/My" destination_kind="0" redeploy_mode="1" )"
               R"(ftp_destination="-1" ftp_directory="" open_browser_after_deploy="1"/></project>)")
                  .toStdString());
}

TEST(ProjectFile, ReadsBackWhatItWrote)
{
    CTestProject test;
    FillProject(test);
    QByteArray first = Saved(test);
    CGalleryProject again(test.environment);
    again.Open(test.ProjectPath());
    again.Save(test.ProjectPath());
    const QByteArray second = Written(test, again);
    // A variable without a value is not read; a gallery without a page gets the first one, and its style
    // becomes that page's.
    first.replace(R"(<picture_variable name="void" vt="0"/>)", "");
    first.replace(R"(template_page="" css="~/program/styles/blue.xml"/><picture_list/>)",
                  R"(template_page="index.html" css="~/program/styles/blue.xml"/><picture_list/>)"
                  R"(<page_style name="index" style="~/program/styles/blue.xml"/>)");
    EXPECT_EQ(second.toStdString(), first.toStdString());
    EXPECT_EQ(again.GetParentGallery(5), again.GetRootGallery());
}

TEST(ProjectFile, OpeningMakesNoCover)
{
    CTestProject test;
    FillProject(test);
    Saved(test);
    CGalleryProject again(test.environment);
    again.Open(test.ProjectPath());
    EXPECT_TRUE(ListDirectory(test.tempFolder.GetPath()).empty());
}

TEST(ProjectFile, RealNumbersReadBackToTheLastBit)
{
    const double numbers[] = {45000.1, DateFromLocalTime(QDateTime::currentDateTime()),
                              0.1,     -1e300,
                              5e-324,  std::numeric_limits<double>::max(),
                              1.0 / 3, 0.0,
                              45000};
    for (const double number : numbers) {
        CTestProject test;
        CGallery& gallery = test.NewGallery();
        gallery.SetObjectVariable(GalleryObject, QStringLiteral("d"), CVariant::Date(number));
        gallery.SetObjectVariable(GalleryObject, QStringLiteral("r"), CVariant::Real(number));
        test.project.Save(test.ProjectPath());
        test.project.Load(test.ProjectPath());
        CGallery& read = *test.project.GetRootGallery();
        EXPECT_EQ(read.GetObjectVariable(GalleryObject, QStringLiteral("d")), CVariant::Date(number))
            << number;
        EXPECT_EQ(read.GetObjectVariable(GalleryObject, QStringLiteral("r")), CVariant::Real(number))
            << number;
    }
}

TEST(ProjectFile, NumbersHaveAPointWhateverTheLocale)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const std::string oldNumbers = std::setlocale(LC_NUMERIC, nullptr);
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8"); // where it is installed
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    gallery.SetObjectVariable(GalleryObject, QStringLiteral("r"), CVariant::Real(1234.5));
    EXPECT_TRUE(Saved(test).contains("doubleVal=\"1234.5\""));
    test.project.Load(test.ProjectPath());
    EXPECT_EQ(test.ValueOf(*test.project.GetRootGallery(), GalleryObject, QStringLiteral("r")),
              QStringLiteral("real:1234.5"));
    std::setlocale(LC_NUMERIC, oldNumbers.c_str());
    QLocale::setDefault(before);
}

TEST(ProjectFile, OddTextsSurvive)
{
    const QString texts[] = {
        QStringLiteral(" blanks "),   QStringLiteral("line\nbreak\r\n\ttab"), QStringLiteral("\u0001\u001f"),
        QStringLiteral("\U0001F600"), QStringLiteral("<%='\"&amp;"),          QStringLiteral("%s%d%%"),
        QStringLiteral(""),
    };
    for (const QString& text : texts) {
        CTestProject test;
        CGallery& gallery = test.NewGallery();
        gallery.SetObjectVariable(GalleryObject, QStringLiteral("name"), CVariant(text));
        if (!text.isEmpty()) {
            gallery.AddPicture(test.MakePicture(text));
        }
        test.project.Save(test.ProjectPath());
        test.project.Load(test.ProjectPath());
        CGallery& again = *test.project.GetRootGallery();
        EXPECT_EQ(again.GetDisplayName(), text);
        EXPECT_EQ(CTestProject::Entries(again), text);
    }
}

TEST(ProjectFile, OpensByABareFileNameToo)
{
    CTestProject test;
    const QString before = QDir::currentPath();
    test.scratch.Write(QStringLiteral("site/moved.jpg"), "");
    test.scratch.Write(QStringLiteral("site/x.gallery"),
                       "<project><gallery><picture_list><picture "
                       "path=\"/gone/moved.jpg\"/></picture_list></gallery></project>");
    test.scratch.Write(QStringLiteral("site/Templates/t.xml"),
                       "<template><page file=\"i.html\"/></template>");
    ASSERT_TRUE(QDir::setCurrent(test.Path(QStringLiteral("site"))));
    test.project.Open(QStringLiteral("x.gallery"));
    test.project.Save(QStringLiteral("y.gallery"));
    QDir::setCurrent(before);
    EXPECT_EQ(test.project.GetName(), QStringLiteral("y"));
    EXPECT_EQ(test.project.GetCatalogue().GetTemplates().size(), 1u);
    EXPECT_TRUE(test.scratch.Read(QStringLiteral("site/y.gallery"))
                    .contains("path=\"" + test.Path(QStringLiteral("site/moved.jpg")).toUtf8() + "\""));
}

TEST(ProjectFile, ALinkStaysOneAndTheFileThatItLeadsToIsReplaced)
{
    CTestProject test;
    test.NewGallery();
    const QString file = test.Path(QStringLiteral("elsewhere/My.gallery"));
    test.project.Save(file);
    const QString link = test.Path(QStringLiteral("link.gallery"));
    ASSERT_TRUE(QFile::link(file, link));
    test.project.AddChildGallery(0);
    test.project.Save(link);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(test.scratch.Read(QStringLiteral("elsewhere/My.gallery")).count("<gallery "), 2);
}

TEST(ProjectFile, HoldsWhatThePageOfFormatsTells)
{
    CTestProject test;
    FillProject(test);
    QFile page(QStringLiteral(SOURCE_FOLDER "/docs/formats.md"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    QStringList written = NamesIn(Saved(test));
    // A full project has a variable of each type at its pictures alone.
    for (const char* element : {"picture_list_variable", "page_variable", "project_variable"}) {
        for (const char* value : {"lVal", "doubleVal", "bstrVal"}) {
            written += QString::fromLatin1(element) + QLatin1Char(' ') + QString::fromLatin1(value);
        }
    }
    written.removeDuplicates();
    written.sort();
    QStringList told = NamesInTables(QString::fromUtf8(page.readAll()));
    told.sort();
    EXPECT_GT(told.size(), 60);
    EXPECT_EQ(told.join(QLatin1Char('\n')).toStdString(), written.join(QLatin1Char('\n')).toStdString());
}
