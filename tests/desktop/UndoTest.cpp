#include <QFile>
#include <gtest/gtest.h>

#include "DesktopProgram.h"
#include "SavedProject.h"

// What a person has done is taken back and done anew, by menu, keys and the notice, and the saved file shows
// it.

namespace {

class Undo : public testing::Test {
protected:
    CDesktopProgram program;
    QString project = program.CopySample();

    void StartIn(int gallery)
    {
        ChooseGallery(project, gallery);
        program.Start({project});
    }
    void Press(const char* title, const char* tip)
    {
        Await([&] { program.PressStripButton(PictureOnPage(title), QString::fromLatin1(tip)); });
    }
    // Does something that brings another page.
    void Await(const std::function<void()>& act)
    {
        program.InPage(QStringLiteral("window.isOld_ = true"));
        act();
        ASSERT_TRUE(program.WaitInPage(QStringLiteral("!window.isOld_")));
    }
    void PressKeys(const char* keys)
    {
        Await([&] { program.PressKeys({QString::fromLatin1(keys)}); });
    }
    // What a save by itself has written.
    bool WaitForFile(const QByteArray& text)
    {
        return program.WaitFor([&] { return Read() == text; });
    }
    QByteArray Read() const
    {
        QFile file(project);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList Names(int gallery) const { return SavedProject(project).galleries[gallery].GetNames(); }
};

} // namespace

TEST_F(Undo, ActsOnPicturesAreTakenBackAndDoneAnewByKeys)
{
    StartIn(1);
    const QStringList before = Names(1);
    Press("High Pass", "Rotate clockwise");
    Press("Blue Ridges", "Move up");
    Press("Alpenglow", "Delete");
    ASSERT_TRUE(program.WaitFor([&] { return Names(1).size() == before.size() - 1; }));
    const QByteArray after = Read();
    for (int i = 0; i < 3; ++i) {
        PressKeys("ctrl+z");
    }
    ASSERT_TRUE(program.WaitFor([&] { return Names(1) == before; }));
    EXPECT_EQ(SavedProject(project).galleries[1].Find(QStringLiteral("High Pass.jpg"))->angle, 0);
    PressKeys("ctrl+shift+z");
    PressKeys("ctrl+y");
    PressKeys("ctrl+y");
    EXPECT_TRUE(WaitForFile(after));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Undo, TheNoticeTakesADeletionBack)
{
    StartIn(1);
    const QStringList before = Names(1);
    Press("Alpenglow", "Delete");
    ASSERT_TRUE(program.WaitFor([&] { return Names(1).size() == before.size() - 1; }));
    program.TakePicture(QStringLiteral("undo-notice"));
    PressKeys("alt+u");
    EXPECT_TRUE(program.WaitFor([&] { return Names(1) == before; }));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Undo, TheMenuNamesTheAct)
{
    StartIn(1);
    Press("High Pass", "Rotate clockwise");
    Await([&] {
        program.PressKeys({QStringLiteral("alt+e")});
        program.TakePicture(QStringLiteral("undo-menu"));
        program.PressKeys({QStringLiteral("u")});
    });
    ASSERT_TRUE(program.WaitFor([&] {
        return SavedProject(project).galleries[1].Find(QStringLiteral("High Pass.jpg"))->angle == 0;
    }));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST_F(Undo, ThreeQuickClicksTurnAPictureThreeTimes)
{
    StartIn(1);
    const QPoint button =
        program.PointAtStripButton(PictureOnPage("High Pass"), QStringLiteral("Rotate clockwise"));
    for (int i = 0; i < 3; ++i) {
        program.Click(button);
    }
    EXPECT_TRUE(program.WaitFor([&] {
        return SavedProject(project).galleries[1].Find(QStringLiteral("High Pass.jpg"))->angle == 3;
    }));
    EXPECT_EQ(program.Terminate(), 0);
}
