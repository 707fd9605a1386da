#include <utility>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

#include "DesktopProgram.h"
#include "FolderPane.h"
#include "SavedProject.h"

// The steps of docs/guide.md, each as the guide tells it, and a picture of each: docs/make-screenshots takes
// them from here into docs/images.

namespace {

class Guide : public testing::Test {
protected:
    CDesktopProgram program{QSize(1200, 750)};
    QString project = program.CopySample();

    void SetUp() override
    {
        program.WriteSettings("ColourScheme=light\n");
        // The pictures of the sample stand in its file as "/sample/...". None of those of the mountains are
        // in the first gallery.
        const QString folder = project.section(QLatin1Char('/'), 0, -2);
        QFile file(project);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        QByteArray text = file.readAll();
        text.replace("\"/sample", '"' + folder.toUtf8());
        file.resize(0);
        file.seek(0);
        file.write(text);
        file.close();
        PointToFolder(project, {folder + QStringLiteral("/Mountains"), folder,
                                folder + QStringLiteral("/By the Water"), folder + QStringLiteral("/Night")});
    }

    void WaitForPictures() { ASSERT_TRUE(program.WaitForPictures()); }

    void StartWithSample()
    {
        program.Start({project});
        WaitForPictures();
    }

    // In the file, in all galleries.
    int TurnedPictures() const
    {
        int count = 0;
        for (const auto& [index, gallery] : SavedProject(project).galleries) {
            for (const SavedProject::Picture& picture : gallery.pictures) {
                count += picture.angle != 0 ? 1 : 0;
            }
        }
        return count;
    }

    // A menu of the menu bar by its letter, then what is pressed in it.
    void UseMenu(const char* letter, const QStringList& keys)
    {
        const qsizetype before = program.CountWindows();
        program.PressKeys({QStringLiteral("alt+%1").arg(QLatin1String(letter))});
        ASSERT_TRUE(program.WaitFor([&] { return program.CountWindows() > before; }));
        program.PressKeys(keys);
    }

    void WaitForDialog(const char* title)
    {
        ASSERT_TRUE(program.WaitForWindow(QString::fromLatin1(title)));
        program.FocusWindow(QString::fromLatin1(title));
    }

    // Of the screen, or of the window of this title. Taken once it has come to rest, and is unlike the last
    // picture: some steps change nothing but what is seen.
    void TakePicture(const char* step, const char* window = "")
    {
        const QString name = QStringLiteral("guide-") + QLatin1String(step);
        const QString path = QStringLiteral(SCREENSHOT_FOLDER "/%1.png").arg(name);
        const QByteArray former = last;
        int equal = 0;
        ASSERT_TRUE(program.WaitFor([&] {
            program.TakePicture(name, QString::fromLatin1(window));
            const QByteArray before = std::exchange(last, ReadPixels(path));
            equal = last == before ? equal + 1 : 0;
            return equal >= 3 && last != former;
        })) << step;
    }

private:
    // Without the date that is in the file.
    static QByteArray ReadPixels(const QString& path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const qsizetype pixels = bytes.indexOf("IDAT");
        return bytes.mid(pixels, bytes.indexOf("tEXt", pixels) - pixels);
    }

    QByteArray last;
};

} // namespace

TEST_F(Guide, TheFirstStartShowsAnEmptyGallery)
{
    program.Start({});
    TakePicture("first-start");
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(SavedProject(program.GetDefaultProject()).galleries.size(), 1u);
}

TEST_F(Guide, TheWindowHasThePageTheTreeAndTheFolder)
{
    StartWithSample();
    TakePicture("window");
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Guide, AnEarlierVersionIsOpenedFromTheMenu)
{
    StartWithSample();
    program.PressStripButton(PictureOnPage("River Stones"), QStringLiteral("Rotate clockwise"));
    ASSERT_TRUE(program.WaitFor([&] { return TurnedPictures() == 1; }));
    EXPECT_EQ(program.Terminate(), 0);

    StartWithSample();
    UseMenu("f", {QStringLiteral("e")});
    WaitForDialog("Open earlier version");
    TakePicture("earlier-versions", "Open earlier version");
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitFor([&] { return TurnedPictures() == 0; }));
    WaitForPictures();
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(TurnedPictures(), 0);

    // What is damaged offers them by itself.
    QFile file(project);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<project");
    file.close();
    program.StartWithMessage({project}, QStringLiteral("Vistorama: please note"));
    program.FocusWindow(QStringLiteral("Vistorama: please note"));
    program.PressKeys({QStringLiteral("Return")});
    WaitForDialog("Open earlier version");
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitFor([&] { return program.GetTitle() == QStringLiteral("Vistorama - sample"); }));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(SavedProject(project).galleries.size(), 4u);
}

TEST_F(Guide, AProjectThatIsMovedWithItsPicturesFindsThemAgain)
{
    const QString folder = project.section(QLatin1Char('/'), 0, -2);
    const QString moved = QDir::cleanPath(folder + QStringLiteral("/../Moved"));
    ASSERT_TRUE(QDir().rename(folder, moved));
    program.Start({moved + project.mid(folder.size())});
    WaitForPictures();
    EXPECT_FALSE(
        program.InPage(QStringLiteral("document.querySelector('img[data-absent]') != null")).toBool());
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Guide, MissingPicturesAreCardsAndAreFoundInAFolder)
{
    const QString folder = project.section(QLatin1Char('/'), 0, -2);
    const QString elsewhere = QDir::cleanPath(folder + QStringLiteral("/../Elsewhere"));
    ASSERT_TRUE(QDir().mkpath(elsewhere));
    ASSERT_TRUE(
        QDir().rename(folder + QStringLiteral("/By the Water"), elsewhere + QStringLiteral("/By the Water")));
    const QString aCard = QStringLiteral("(document.querySelector('img[data-absent]') != null)");
    program.Start({project});
    WaitForPictures();
    // "Show" in the line above the page.
    program.PressKeys({QStringLiteral("alt+w")});
    ASSERT_TRUE(program.WaitInPage(aCard));
    TakePicture("missing-pictures");
    UseMenu("s", {QStringLiteral("m")});
    WaitForDialog("Select picture folder...");
    program.PressKeys({QStringLiteral("ctrl+a")});
    program.TypeText(elsewhere);
    program.PressKeys({QStringLiteral("Return")});
    WaitForDialog("Find missing pictures");
    TakePicture("found-pictures", "Find missing pictures");
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitInPage(QLatin1Char('!') + aCard));
    WaitForPictures();
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_TRUE(SavedProject(project).text.contains(elsewhere + QStringLiteral("/By the Water/")));
    EXPECT_FALSE(SavedProject(project).text.contains(folder + QStringLiteral("/By the Water/")));
}

TEST_F(Guide, APictureIsFoundByItsButton)
{
    const QString old = project.section(QLatin1Char('/'), 0, -2) + QStringLiteral("/October.jpg");
    const QString found = program.Path(QStringLiteral("Autumn.jpg"));
    ASSERT_TRUE(QFile::rename(old, found));
    program.Start({project});
    const QString card = QStringLiteral("document.querySelector('img[data-absent]')");
    ASSERT_TRUE(program.WaitInPage(card + QStringLiteral(" != null")));
    program.PressStripButton(card, QStringLiteral("Find..."));
    WaitForDialog("Find October.jpg");
    program.TypeText(found);
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("Find October.jpg")));
    ASSERT_TRUE(program.WaitInPage(card + QStringLiteral(" == null")));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_TRUE(SavedProject(project).text.contains(found));
    EXPECT_FALSE(SavedProject(project).text.contains(old));
}

TEST_F(Guide, LayoutAndStyleAreChosenInTheMenu)
{
    StartWithSample();
    const qsizetype before = program.CountWindows();
    UseMenu("g", {QStringLiteral("l")});
    ASSERT_TRUE(program.WaitFor([&] { return program.CountWindows() == before + 2; }));
    TakePicture("layout");
    // Cards is the first one.
    program.PressKeys({QStringLiteral("Home"), QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitFor([&] { return program.CountWindows() == before; }));
    // Auto, Film, Gallery wall, Ink.
    UseMenu("g", {QStringLiteral("s"), QStringLiteral("Home"), QStringLiteral("Down"), QStringLiteral("Down"),
                  QStringLiteral("Down"), QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("document.querySelector('link[href*=Ink]') != null")));
    WaitForPictures();
    TakePicture("style");
    EXPECT_EQ(program.Terminate(), 0);
    const SavedProject saved(project);
    EXPECT_TRUE(
        saved.galleries.at(0).style.at(QStringLiteral("template")).endsWith(QStringLiteral("cards.xml")));
}

TEST_F(Guide, ATextIsEditedWhereItStands)
{
    StartWithSample();
    program.PressStripButton(QStringLiteral("document.querySelector('h1 [onmouseenter]')"),
                             QStringLiteral("Edit text"));
    WaitForDialog("Gallery title");
    TakePicture("edit-text", "Gallery title");
    program.PressKeys({QStringLiteral("Escape")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("Gallery title")));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Guide, APictureHasItsButtons)
{
    StartWithSample();
    program.MovePointer(program.PlaceOf(PictureOnPage("October")));
    ASSERT_TRUE(
        program.WaitInPage(QStringLiteral("[...document.querySelectorAll('img[id$=_menu]')].some(s => "
                                          "s.style.display == 'inline')")));
    TakePicture("picture");
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Guide, ADeletionIsTakenBackByItsNotice)
{
    StartWithSample();
    const QString picture = PictureOnPage("October");
    program.PressStripButton(picture, QStringLiteral("Delete"));
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("!(%1)").arg(picture)));
    WaitForPictures();
    TakePicture("undo");
    program.PressKeys({QStringLiteral("alt+u")});
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("!!(%1)").arg(picture)));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_TRUE(SavedProject(project).galleries.at(0).GetNames().contains(QStringLiteral("October.jpg")));
}

TEST_F(Guide, SeveralPicturesAreHandledAtOnce)
{
    ChooseGallery(project, 1);
    StartWithSample();
    program.HoldKey(QStringLiteral("ctrl"));
    int count = 0;
    for (const char* title : {"Alpenglow", "First Snow", "High Pass"}) {
        program.Click(program.PlaceOf(PictureOnPage(title)));
        ASSERT_TRUE(program.WaitInPage(
            QStringLiteral("document.querySelectorAll('.preview-selected').length == %1").arg(++count)));
    }
    program.ReleaseKey(QStringLiteral("ctrl"));
    TakePicture("selection");
    program.PressKeys({QStringLiteral("ctrl+r")});
    EXPECT_TRUE(program.WaitFor([&] { return TurnedPictures() == 3; }));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Guide, TitlesAreEditedInATable)
{
    ChooseGallery(project, 1);
    StartWithSample();
    UseMenu("g", {QStringLiteral("t")});
    WaitForDialog("Titles and descriptions");
    program.TypeText(QStringLiteral("Over the clouds"));
    program.PressKeys({QStringLiteral("Return")});
    TakePicture("titles", "Titles and descriptions");
    program.PressKeys({QStringLiteral("ctrl+Return")});
    EXPECT_TRUE(program.WaitFor([&] {
        const SavedProject saved(project);
        return saved.galleries.at(1).pictures[0].variables.at(QStringLiteral("title")) ==
               QStringLiteral("Over the clouds");
    }));
    EXPECT_EQ(program.Terminate(), 0);
}

// Seen when the page is made anew; the picture keeps its place.
TEST_F(Guide, APictureThatIsNotThereIsACard)
{
    StartWithSample();
    const QStringList before = SavedProject(project).galleries.at(0).GetNames();
    ASSERT_TRUE(QFile::remove(program.Path(QStringLiteral("sample/October.jpg"))));
    program.PressStripButton(PictureOnPage("River Stones"), QStringLiteral("Rotate clockwise"));
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("document.querySelector('img[data-absent]') != null")));
    program.MovePointer(program.PlaceOf(QStringLiteral("document.querySelector('img[data-absent]')")));
    program.TakePicture(QStringLiteral("not-there"));
    program.PressStripButton(PictureOnPage("October"), QStringLiteral("Move up"));
    ASSERT_TRUE(program.WaitFor([&] { return SavedProject(project).galleries.at(0).GetNames() != before; }));
    EXPECT_EQ(program.Terminate(), 0);
    QStringList after = SavedProject(project).galleries.at(0).GetNames();
    EXPECT_EQ(after.size(), before.size());
    EXPECT_TRUE(after.contains(QStringLiteral("October.jpg")));
}

TEST_F(Guide, AProjectIsNamedWithoutItsEnding)
{
    program.Start({program.Path(QStringLiteral("Trip"))});
    EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - Trip"));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_TRUE(QFile::exists(program.Path(QStringLiteral("Trip.gallery"))));
    const QString link = program.Path(QStringLiteral("link.gallery"));
    ASSERT_TRUE(QFile::link(program.Path(QStringLiteral("Trip.gallery")), link));
    program.Start({link});
    EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - Trip"));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_FALSE(QFile::symLinkTarget(link).isEmpty());
}

TEST_F(Guide, PartsOfThePageAreHidden)
{
    StartWithSample();
    program.Click(ToolButton::Visibility);
    WaitForDialog("Change page elements visibility");
    TakePicture("visibility", "Change page elements visibility");
    program.PressKeys({QStringLiteral("Escape")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("Change page elements visibility")));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Guide, AWatermarkIsLaidOverThePictures)
{
    const QString mark = program.Path(QStringLiteral("mark.png"));
    ASSERT_EQ(QProcess::execute(QStringLiteral("convert"),
                                {QStringLiteral("-size"), QStringLiteral("220x60"), QStringLiteral("xc:none"),
                                 QStringLiteral("-fill"), QStringLiteral("white"), QStringLiteral("-stroke"),
                                 QStringLiteral("white"), QStringLiteral("-draw"),
                                 QStringLiteral("circle 30,30 30,8 rectangle 70,24 210,36"), mark}),
              0);
    StartWithSample();
    UseMenu("t", {QStringLiteral("Return")});
    WaitForDialog("Image watermark");
    program.PressKeys({QStringLiteral("alt+z"), QStringLiteral("End"), QStringLiteral("alt+c")});
    WaitForDialog("Choose a watermark picture");
    program.TypeText(mark);
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("Choose a watermark picture")));
    program.FocusWindow(QStringLiteral("Image watermark"));
    TakePicture("watermark", "Image watermark");
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("Image watermark")));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_TRUE(SavedProject(project).text.contains(mark));
}

TEST_F(Guide, ASignatureIsWrittenOnThePictures)
{
    StartWithSample();
    UseMenu("t", {QStringLiteral("Down"), QStringLiteral("Return")});
    WaitForDialog("Image signature");
    program.PressKeys({QStringLiteral("alt+z"), QStringLiteral("End"), QStringLiteral("alt+t")});
    program.TypeText(QStringLiteral("Anna Example"));
    TakePicture("signature", "Image signature");
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("Image signature")));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_TRUE(SavedProject(project).text.contains(QStringLiteral("Anna Example")));
}

TEST_F(Guide, TheWizardDeploysToAFolder)
{
    const QString site = program.Path(QStringLiteral("site"));
    StartWithSample();
    UseMenu("g", {QStringLiteral("d")});
    WaitForDialog("Deploy Wizard");
    TakePicture("deploy", "Deploy Wizard");
    program.PressKeys({QStringLiteral("alt+n")});
    TakePicture("deploy-folder", "Deploy Wizard");
    program.PressKeys({QStringLiteral("ctrl+a")});
    program.TypeText(site);
    program.PressKeys({QStringLiteral("alt+n")});
    TakePicture("deploy-start", "Deploy Wizard");
    // A browser would come up in front of the person who runs this.
    program.PressKeys({QStringLiteral("alt+o"), QStringLiteral("alt+n")});
    // Written when all else is; until then its last number is the time of the beginning.
    const QDir records(program.GetHome() + QStringLiteral("/.cache/vistorama/deployments"));
    ASSERT_TRUE(program.WaitFor([&] {
        QFile record(records.filePath(records.entryList(QDir::Files).value(0)));
        return record.open(QIODevice::ReadOnly) &&
               record.readAll().endsWith(QByteArray(sizeof(qint64), '\0'));
    }));
    TakePicture("deploy-done", "Deploy Wizard");
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("Deploy Wizard")));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_TRUE(QFile::exists(site + QStringLiteral("/index.html")));
}

TEST_F(Guide, TheWizardDeploysToAServer)
{
    StartWithSample();
    UseMenu("g", {QStringLiteral("d")});
    WaitForDialog("Deploy Wizard");
    program.PressKeys({QStringLiteral("alt+i"), QStringLiteral("alt+n")});
    TakePicture("deploy-server", "Deploy Wizard");
    program.PressKeys({QStringLiteral("Escape")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("Deploy Wizard")));
    EXPECT_EQ(program.Terminate(), 0);
}
