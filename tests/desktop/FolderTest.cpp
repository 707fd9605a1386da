#include <QFile>
#include <gtest/gtest.h>

#include "FolderPane.h"
#include "SavedProject.h"
#include "common/FileSystem.h"

// The folder view as a person uses it. The document is looked at in the saved file.

namespace {

class Folder : public testing::Test {
protected:
    CDesktopProgram program;
    CFolderPane pane{program};
    QString project = program.CopySample();
    QString photos = program.Path(QStringLiteral("Photos & more #1"));

    // A folder of that many pictures "0.jpg", "1.jpg", ...
    void MakeFolder(int count)
    {
        MakeDirectoryPath(photos);
        for (int i = 0; i < count; ++i) {
            AddFile(QStringLiteral("%1.jpg").arg(i, 3, 10, QLatin1Char('0')));
        }
    }
    QString AddFile(const QString& name, const QString& source = QStringLiteral("October.jpg"))
    {
        const QString path = JoinPath(photos, name);
        EXPECT_TRUE(QFile::copy(QStringLiteral(DATA_FOLDER "/sample/") + source, path));
        return path;
    }
    void Start(const QString& folder)
    {
        PointToFolder(project, {folder});
        program.Start({project});
    }
    void Start() { Start(photos); }

    QStringList EndAndRead()
    {
        EXPECT_EQ(program.Terminate(), 0);
        return SavedProject(project).galleries[0].GetNames();
    }
    void PressStripButton(int index, const char* tip)
    {
        program.MovePointer(pane.PlaceOf(CFolderPane::Row(index)));
        const QString strips = QStringLiteral("[...document.querySelectorAll('#i%1_menu')]").arg(index);
        const QString shown =
            QStringLiteral("(%1.find(s => s.style.display == 'inline') || null)").arg(strips);
        ASSERT_TRUE(pane.WaitFor(shown + QStringLiteral(" != null")));
        const QPoint button =
            pane.PlaceInRect(shown, QStringLiteral("24 * %1.findIndex(s => s.alt == '%2') - 12")
                                        .arg(strips, QString::fromLatin1(tip)));
        program.MovePointer(button);
        ASSERT_TRUE(
            pane.WaitFor(QStringLiteral("(%1 || {}).alt == '%2'").arg(shown, QString::fromLatin1(tip))));
        program.Click(button);
    }
};

} // namespace

TEST_F(Folder, TwoClicksOnAThumbnailAddThePicture)
{
    MakeFolder(3);
    Start();
    ASSERT_TRUE(pane.WaitForRows(3));
    EXPECT_EQ(pane.GetHeading(), QStringLiteral("Photos & more #1 ( 3 pictures )"));
    program.InPage(QStringLiteral("window.isOld_ = true"));
    program.DoubleClick(pane.PlaceOf(CFolderPane::Row(1)));
    ASSERT_TRUE(pane.WaitForRows(2));
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("!window.isOld_")));
    // The count is of all pictures of the folder.
    EXPECT_EQ(pane.GetHeading(), QStringLiteral("Photos & more #1 ( 3 pictures )"));
    const QStringList names = EndAndRead();
    EXPECT_EQ(names.count(QStringLiteral("001.jpg")), 1);
    EXPECT_FALSE(names.contains(QStringLiteral("000.jpg")));
}

TEST_F(Folder, TheButtonsOfAThumbnailAddOneAndAll)
{
    MakeFolder(4);
    Start();
    ASSERT_TRUE(pane.WaitForRows(4));
    PressStripButton(2, "Add picture");
    ASSERT_TRUE(pane.WaitForRows(3));
    PressStripButton(0, "Add all pictures");
    ASSERT_TRUE(pane.WaitForRows(0));
    ASSERT_TRUE(pane.WaitFor(QStringLiteral(
        "document.body.innerText.includes('All pictures of this folder are in the gallery.')")));
    const QStringList names = EndAndRead();
    for (const char* name : {"000.jpg", "001.jpg", "002.jpg", "003.jpg"}) {
        EXPECT_EQ(names.count(QString::fromLatin1(name)), 1) << name;
    }
    // In order, after the one that was added first.
    EXPECT_LT(names.indexOf(QStringLiteral("000.jpg")), names.indexOf(QStringLiteral("003.jpg")));
}

TEST_F(Folder, PicturesOfTheGalleryAreHiddenAndComeBackWhenTheyAreRemoved)
{
    // All single pictures of the sample's root gallery lie there.
    Start(ExtractFolder(project));
    ASSERT_TRUE(pane.WaitForRows(0));
    EXPECT_EQ(pane.GetHeading(), QStringLiteral("sample ( 12 pictures )"));
    program.PressStripButton(PictureOnPage("October"), QStringLiteral("Delete"));
    ASSERT_TRUE(pane.WaitForRows(1));
    EXPECT_FALSE(EndAndRead().contains(QStringLiteral("October.jpg")));
}

TEST_F(Folder, AnEmptyFolderAndOneWithOnePicture)
{
    MakeFolder(0);
    Start();
    ASSERT_TRUE(pane.WaitForRows(0));
    EXPECT_EQ(pane.GetHeading(), QStringLiteral("Photos & more #1 ( 0 pictures )"));
    AddFile(QStringLiteral("new.jpg"));
    ASSERT_TRUE(pane.WaitForRows(1));
    EXPECT_EQ(pane.GetHeading(), QStringLiteral("Photos & more #1 ( 1 picture )"));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Folder, FilesThatComeAndGoShowWithoutARestartAndTheListKeepsItsPlace)
{
    MakeFolder(30);
    Start();
    ASSERT_TRUE(pane.WaitForRows(30));
    pane.PlaceOf(CFolderPane::Row(12));
    const int place = pane.Ask(QStringLiteral("Math.round(document.scrollingElement.scrollTop)")).toInt();
    ASSERT_GT(place, 500);
    AddFile(QStringLiteral("zz.png"), QStringLiteral("Rain on the Window.png"));
    ASSERT_TRUE(pane.WaitForRows(31));
    EXPECT_EQ(pane.Ask(QStringLiteral("Math.round(document.scrollingElement.scrollTop)")).toInt(), place);
    ASSERT_TRUE(QFile::remove(JoinPath(photos, QStringLiteral("zz.png"))));
    ASSERT_TRUE(pane.WaitForRows(30));
    EXPECT_EQ(pane.Ask(QStringLiteral("Math.round(document.scrollingElement.scrollTop)")).toInt(), place);
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Folder, AFileThatIsStillBeingWrittenIsShownWhenItIsWhole)
{
    MakeFolder(1);
    QFile source(QStringLiteral(DATA_FOLDER "/sample/Snowfall.jpg"));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    const QByteArray bytes = source.readAll();
    QFile slow(JoinPath(photos, QStringLiteral("slow.jpg")));
    ASSERT_TRUE(slow.open(QIODevice::WriteOnly));
    slow.write(bytes.left(200));
    slow.flush();
    Start();
    ASSERT_TRUE(pane.WaitForRows(2));
    EXPECT_TRUE(pane.WaitFor(CFolderPane::Row(1) + QStringLiteral(".src.includes('_unfinished')")));
    slow.write(bytes.mid(200));
    slow.close();
    EXPECT_TRUE(pane.WaitFor(QStringLiteral("(i => i && i.complete && !i.src.includes('_unfinished'))(%1)")
                                 .arg(CFolderPane::Row(1))));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Folder, AFolderThatVanishesIsToldOfAndComesBack)
{
    MakeFolder(2);
    Start();
    ASSERT_TRUE(pane.WaitForRows(2));
    const QString away = program.Path(QStringLiteral("away"));
    ASSERT_TRUE(QFile::rename(photos, away));
    ASSERT_TRUE(
        pane.WaitFor(QStringLiteral("document.body.innerText.includes('This folder is not there:')")));
    program.TakePicture(QStringLiteral("folder-vanished"));
    ASSERT_TRUE(QFile::rename(away, photos));
    ASSERT_TRUE(pane.WaitForRows(2));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Folder, AnotherFolderIsChosenFromTheListAndStandsInTheProject)
{
    MakeFolder(2);
    PointToFolder(project, {photos, ExtractFolder(project) + QStringLiteral("Night")});
    program.Start({project});
    ASSERT_TRUE(pane.WaitForRows(2));
    program.Click(pane.GetToolBarPlace(15));
    program.PressKeys({QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Return")});
    ASSERT_TRUE(pane.WaitForRows(6));
    EXPECT_EQ(pane.GetHeading(), QStringLiteral("Night ( 6 pictures )"));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_TRUE(SavedProject(project).text.contains(
        QStringLiteral("recent_folder=\"%1\"").arg(ExtractFolder(project) + QStringLiteral("Night"))));
}

TEST_F(Folder, AFolderIsChosenInTheFolderBrowser)
{
    MakeFolder(2);
    Start();
    ASSERT_TRUE(pane.WaitForRows(2));
    program.PressKeys({QStringLiteral("alt+s"), QStringLiteral("o")});
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Select picture folder...")));
    program.FocusWindow(QStringLiteral("Select picture folder..."));
    program.PressKeys({QStringLiteral("ctrl+a")});
    program.TypeText(ExtractFolder(project) + QStringLiteral("Mountains"));
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(pane.WaitForRows(7));
    EXPECT_EQ(pane.GetHeading(), QStringLiteral("Mountains ( 7 pictures )"));
    EXPECT_EQ(program.Terminate(), 0);
    const QString text = SavedProject(project).text;
    EXPECT_TRUE(text.contains(QStringLiteral("recent_folder=\"%1Mountains\"").arg(ExtractFolder(project))));
    EXPECT_TRUE(text.contains(QStringLiteral("<folder path=\"%1\"/>")
                                  .arg(QString(photos).replace(QLatin1Char('&'), QStringLiteral("&amp;")))));
}

TEST_F(Folder, PicturesThatCanNotBeReadDoNotStopTheRest)
{
    MakeFolder(1);
    program.scratch.Write(QStringLiteral("Photos & more #1/a \"zero\".jpg"), "");
    program.scratch.Write(QStringLiteral("Photos & more #1/b 'text' 50%41?.png"), "text");
    QFile::link(photos, JoinPath(photos, QStringLiteral("loop.jpg")));
    AddFile(QStringLiteral("zoë \n line & <b>.jpg"));
    Start();
    ASSERT_TRUE(pane.WaitForRows(4));
    ASSERT_TRUE(pane.WaitFor(QStringLiteral(
        "[...document.querySelectorAll('td a img')].every(i => i.complete && i.naturalWidth > 100)")));
    program.TakePicture(QStringLiteral("folder-unreadable"));
    program.DoubleClick(pane.PlaceOf(CFolderPane::Row(3)));
    ASSERT_TRUE(pane.WaitForRows(3));
    EXPECT_TRUE(EndAndRead().contains(QStringLiteral("zoë \n line & <b>.jpg")));
}

// The rows near the window are in the page, and no others.
TEST_F(Folder, ALargeFolderIsScrolledToItsEnd)
{
    MakeDirectoryPath(photos);
    const QString first = AddFile(QStringLiteral("0000.jpg"));
    for (int i = 1; i < 300; ++i) {
        ASSERT_TRUE(
            QFile::link(first, JoinPath(photos, QStringLiteral("%1.jpg").arg(i, 4, 10, QLatin1Char('0')))));
    }
    Start();
    ASSERT_TRUE(pane.WaitForRows(300));
    const QString images = QStringLiteral("document.querySelectorAll('td a img').length");
    EXPECT_LT(pane.Ask(images).toInt(), 150);
    program.MovePointer(pane.PlaceOf(QStringLiteral("document.querySelector('td a img')")));
    program.FocusWindow(QStringLiteral("Vistorama - "));
    pane.Ask(QStringLiteral("document.scrollingElement.scrollTop = 1e9"));
    ASSERT_TRUE(pane.WaitFor(
        QStringLiteral("(i => i && i.complete && i.naturalWidth > 100)(%1)").arg(CFolderPane::Row(299))));
    EXPECT_LT(pane.Ask(images).toInt(), 250);
    program.DoubleClick(pane.PlaceOf(CFolderPane::Row(299)));
    ASSERT_TRUE(pane.WaitForRows(299));
    // It does not come back with the rows around it.
    pane.Ask(QStringLiteral("document.scrollingElement.scrollTop = 0"));
    ASSERT_TRUE(pane.WaitFor(QStringLiteral("document.getElementById('i298') == null")));
    pane.Ask(QStringLiteral("document.scrollingElement.scrollTop = 1e9"));
    ASSERT_TRUE(pane.WaitFor(QStringLiteral("document.getElementById('i298') != null")));
    EXPECT_TRUE(pane.Ask(QStringLiteral("document.getElementById('i299') == null")).toBool());
    EXPECT_TRUE(EndAndRead().contains(QStringLiteral("0299.jpg")));
}

TEST_F(Folder, ChangingTheFolderInTheMiddleShowsTheOther)
{
    MakeFolder(200);
    PointToFolder(project, {photos, ExtractFolder(project) + QStringLiteral("Night")});
    program.Start({project});
    program.Click(pane.GetToolBarPlace(15));
    program.PressKeys({QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Return")});
    ASSERT_TRUE(pane.WaitForRows(6));
    EXPECT_EQ(pane.GetHeading(), QStringLiteral("Night ( 6 pictures )"));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Folder, ItLooksTidyOnAllScreensInBothColourSchemes)
{
    for (const QSize size : {QSize(1024, 600), QSize(1366, 768), QSize(1920, 1080)}) {
        for (const char* scheme : {"light", "dark"}) {
            CDesktopProgram other(size);
            CFolderPane otherPane(other);
            const QString copy = other.CopySample();
            PointToFolder(copy, {ExtractFolder(copy) + QStringLiteral("Mountains")});
            other.WriteSettings(QByteArray("ColourScheme=") + scheme + '\n');
            other.Start({copy});
            ASSERT_TRUE(otherPane.WaitForRows(7));
            // The card is as wide as told: nothing is scaled.
            EXPECT_TRUE(otherPane.WaitFor(
                QStringLiteral("(i => i.complete && Math.abs(i.naturalWidth - i.clientWidth) < 1)(%1)")
                    .arg(CFolderPane::Row(0))));
            other.MovePointer(otherPane.PlaceOf(CFolderPane::Row(1)));
            other.TakePicture(QStringLiteral("folder-%1x%2-%3")
                                  .arg(size.width())
                                  .arg(size.height())
                                  .arg(QString::fromLatin1(scheme)));
            EXPECT_EQ(other.Terminate(), 0);
        }
    }
}
