#include <gtest/gtest.h>

#include "FolderPane.h"
#include "SavedProject.h"
#include "common/FileSystem.h"

// Pictures are dragged with the mouse of a person: from the folder view into the page, and within the page.

namespace {

class Dragging : public testing::Test {
protected:
    CDesktopProgram program;
    CFolderPane folder{program};
    QString project = program.CopySample();

    void StartIn(int gallery)
    {
        ChooseGallery(project, gallery);
        PointToFolder(project, {ExtractFolder(project)});
        program.Start({project});
    }

    SavedProject::Gallery EndAndRead(int gallery)
    {
        EXPECT_EQ(program.Terminate(), 0);
        return SavedProject(project).galleries[gallery];
    }

    // Holds a picture over a place until the page shows where it would go.
    void Hold(QPoint from, QPoint to)
    {
        program.MovePointer(from);
        program.PressMouse();
        program.MovePointer(from + QPoint(12, 8));
        int step = 0;
        ASSERT_TRUE(program.WaitFor([&] {
            program.MovePointer(to + QPoint(++step % 2, 0));
            return program.InPage(QStringLiteral("document.getElementById('preview_drop_mark') != null"))
                .toBool();
        }));
    }

    // Where a picture of the page is without scrolling, seen from another one whose middle is at that place.
    QPoint FromMiddle(QPoint middle, const QString& title, const QString& other, double share)
    {
        const QStringList way =
            program
                .InPage(
                    QStringLiteral("((a, b) => Math.round(b.x + b.width * %1 - a.x - a.width / 2) + ' ' + "
                                   "Math.round(b.y + b.height / 2 - a.y - a.height / 2))"
                                   "(%2.getBoundingClientRect(), %3.getBoundingClientRect())")
                        .arg(share)
                        .arg(PictureOnPage(title), PictureOnPage(other)))
                .toString()
                .split(QLatin1Char(' '));
        return middle + QPoint(way.value(0).toInt(), way.value(1).toInt());
    }

    bool WaitForNewPage() { return program.WaitInPage(QStringLiteral("!window.isOld_")); }
    void MarkOldPage() { program.InPage(QStringLiteral("window.isOld_ = true")); }
};

} // namespace

TEST_F(Dragging, AThumbnailIsDraggedIntoThePage)
{
    StartIn(1);
    ASSERT_TRUE(folder.WaitForRows(12));
    const QStringList before = SavedProject(project).galleries[1].GetNames();
    MarkOldPage();
    const QPoint from = folder.PlaceOf(CFolderPane::Row(1));
    Hold(from, program.PlaceOf(QStringLiteral("document.body")));
    program.TakePicture(QStringLiteral("drag-thumbnail"));
    program.ReleaseMouse();
    ASSERT_TRUE(WaitForNewPage());
    EXPECT_TRUE(folder.WaitForRows(11));
    const QStringList after = EndAndRead(1).GetNames();
    EXPECT_EQ(after.size(), before.size() + 1);
    EXPECT_TRUE(after.contains(QStringLiteral("Dunes at Dawn.jpg")))
        << qPrintable(after.join(QLatin1Char('|')));
}

TEST_F(Dragging, APictureOfThePageGoesWhereItIsDropped)
{
    StartIn(1);
    QStringList names = SavedProject(project).galleries[1].GetNames();
    const auto title = [&](qsizetype at) {
        return names[at].section(QLatin1Char('.'), 0, 0);
    };
    MarkOldPage();
    const QPoint from = program.PlaceOf(PictureOnPage(title(4)));
    Hold(from, FromMiddle(from, title(4), title(1), 0.2));
    program.TakePicture(QStringLiteral("drag-picture"));
    program.ReleaseMouse();
    ASSERT_TRUE(WaitForNewPage());
    names.move(4, 1);
    EXPECT_EQ(EndAndRead(1).GetNames(), names);
}
