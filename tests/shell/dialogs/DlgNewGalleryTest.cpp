#include "shell/dialogs/DlgNewGallery.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>

#include "shell_support/DialogTools.h"
#include "support/ScratchFolder.h"

TEST(GalleryNames, SplitsASuggestion)
{
    const struct {
        const char* path;
        const char* folder;
        const char* name;
        const char* extension;
    } rows[] = {
        {"/x/My gallery.gallery", "/x/", "My gallery", ".gallery"},
        {"C:\\x\\My gallery.gallery", "C:\\x\\", "My gallery", ".gallery"},
        {"/x/Trip 2004.gallery", "/x/", "Trip ", ".gallery"},
        {"/x/12.gallery", "/x/", "My Vistorama", ".gallery"},
        {"/x/.gallery", "/x/", "My Vistorama", ".gallery"},
        {"/x/a.b.gallery", "/x/", "a.b", ".gallery"},
        {"plain", "", "plain", ""},
        {"", "", "My Vistorama", ""},
    };
    for (const auto& row : rows) {
        const GalleryPath path = SplitSuggestion(QString::fromLatin1(row.path));
        EXPECT_EQ(path.folder, QString::fromLatin1(row.folder)) << row.path;
        EXPECT_EQ(path.name, QString::fromLatin1(row.name)) << row.path;
        EXPECT_EQ(path.extension, QString::fromLatin1(row.extension)) << row.path;
    }
}

TEST(GalleryNames, LosesForbiddenCharacters)
{
    EXPECT_EQ(RemoveForbiddenCharacters(QStringLiteral("a/b?c")), QStringLiteral("abc"));
    EXPECT_EQ(RemoveForbiddenCharacters(QStringLiteral("~!#$%^&*\\/\"'?<>+=|")), QString());
    EXPECT_EQ(RemoveForbiddenCharacters(QStringLiteral("@(a) ü-_.,;:[1]{2}`")),
              QStringLiteral("@(a) ü-_.,;:[1]{2}`"));
}

class DlgNewGallery : public testing::Test {
protected:
    QString Path(const char* name) const { return scratch.Path(QString::fromLatin1(name)); }

    const CScratchFolder scratch;
};

TEST_F(DlgNewGallery, NumbersANameThatExists)
{
    EXPECT_EQ(CDlgNewGallery(Path("My gallery.gallery"), nullptr).GetProjectPath(),
              Path("My gallery.gallery"));
    scratch.Write(QStringLiteral("My gallery.gallery"), "");
    EXPECT_EQ(CDlgNewGallery(Path("My gallery.gallery"), nullptr).GetProjectPath(),
              Path("My gallery1.gallery"));
    scratch.Write(QStringLiteral("My gallery1.gallery"), "");
    EXPECT_EQ(CDlgNewGallery(Path("My gallery1.gallery"), nullptr).GetProjectPath(),
              Path("My gallery2.gallery"));
}

TEST_F(DlgNewGallery, TakesForbiddenCharactersOutAsTheyAreTyped)
{
    CDlgNewGallery dialog(Path("x.gallery"), nullptr);
    auto& name = Find<QLineEdit>(dialog, "name");
    name.clear();
    EXPECT_FALSE(Find<QPushButton>(dialog, "ok").isEnabled());
    QTest::keyClicks(&name, QStringLiteral("a/b?c"));
    EXPECT_EQ(name.text(), QStringLiteral("abc"));
    EXPECT_TRUE(Find<QPushButton>(dialog, "ok").isEnabled());
    name.setCursorPosition(1);
    QTest::keyClicks(&name, QStringLiteral("*1"));
    EXPECT_EQ(name.text(), QStringLiteral("a1bc"));
    EXPECT_EQ(dialog.GetProjectPath(), Path("a1bc.gallery"));
    name.setText(QStringLiteral("???"));
    EXPECT_FALSE(Find<QPushButton>(dialog, "ok").isEnabled());
}

TEST_F(DlgNewGallery, StaysOpenForANameThatExists)
{
    scratch.Write(QStringLiteral("old.gallery"), "kept");
    CDlgNewGallery dialog(Path("new.gallery"), nullptr);
    Find<QLineEdit>(dialog, "name").setText(QStringLiteral("old"));
    dialog.show();
    const CMessageAnswer message;
    Click(dialog, "ok");
    EXPECT_EQ(message.GetText(), QStringLiteral("Gallery with name 'old' already exists.\n"
                                                " Please change the new gallery name."));
    EXPECT_TRUE(dialog.isVisible());
    Find<QLineEdit>(dialog, "name").setText(QStringLiteral("other"));
    Click(dialog, "ok");
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.GetProjectPath(), Path("other.gallery"));
    EXPECT_EQ(scratch.ListFiles(), QStringList(QStringLiteral("old.gallery")));
}

TEST_F(DlgNewGallery, TakesAFolderFromTheFolderDialog)
{
    scratch.Write(QStringLiteral("albums/any.txt"), "");
    CDlgNewGallery dialog(Path("x.gallery"), nullptr);
    const CModalAnswer answer([&](QWidget& modal) {
        auto* folders = qobject_cast<QFileDialog*>(&modal);
        ASSERT_NE(folders, nullptr);
        EXPECT_EQ(folders->windowTitle(), QStringLiteral("Select picture folder..."));
        folders->setDirectory(Path("albums"));
        folders->selectFile(Path("albums"));
        static_cast<QDialog*>(folders)->accept();
    });
    Click(dialog, "browse");
    EXPECT_TRUE(answer.WasAsked());
    EXPECT_EQ(dialog.GetProjectPath(), Path("albums/x.gallery"));
    EXPECT_EQ(Find<QLineEdit>(dialog, "folder").text(), Path("albums"));
}

TEST_F(DlgNewGallery, IsUsable)
{
    CDlgNewGallery dialog(Path("My gallery.gallery"), nullptr);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("New pictures gallery"));
    ExpectUsable(dialog, QStringLiteral("new-gallery"));
}
