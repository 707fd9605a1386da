#include <gtest/gtest.h>

#include "common/Exceptions.h"
#include "shell/dialogs/FileDialogs.h"
#include "shell/frame/GalleryCommands.h"
#include "shell/frame/ProjectPath.h"
#include "support/ScratchFolder.h"

TEST(DroppedFiles, PicturesAndThePicturesOfFoldersAreTaken)
{
    const CScratchFolder scratch;
    const QString one = scratch.Write(QStringLiteral("one.JPG"), "");
    const QString jpeg = scratch.Write(QStringLiteral("two.jpeg"), "");
    const QString text = scratch.Write(QStringLiteral("notes.txt"), "");
    scratch.Write(QStringLiteral("folder/b.png"), "");
    scratch.Write(QStringLiteral("folder/A ü#%.gif"), "");
    scratch.Write(QStringLiteral("folder/c.doc"), "");
    scratch.Write(QStringLiteral("folder/deeper/d.png"), "");
    const DroppedFiles files = SortDropped({one, text, scratch.Path(QStringLiteral("folder")), jpeg,
                                            scratch.Path(QStringLiteral("gone")), QString()});
    EXPECT_EQ(files.project, QString());
    EXPECT_EQ(files.pictures, (QStringList{one, scratch.Path(QStringLiteral("folder/A ü#%.gif")),
                                           scratch.Path(QStringLiteral("folder/b.png")), jpeg}));
}

TEST(DroppedFiles, AProjectIsOpenedAndNotAdded)
{
    const DroppedFiles files = SortDropped(
        {QStringLiteral("/a.png"), QStringLiteral("/One.Gallery"), QStringLiteral("/two.gallery")});
    EXPECT_EQ(files.project, QStringLiteral("/One.Gallery"));
}

// Any XML can be read as a project; a drawing that is opened by mistake must not become one.
TEST(ProjectFile, AFileOfAnotherKindIsNoProject)
{
    const CScratchFolder scratch;
    const QString drawing = scratch.Write(QStringLiteral("drawing.svg"), "<svg/>");
    try {
        RequireProjectFile(drawing);
        FAIL();
    } catch (const CGenericException& failure) {
        EXPECT_EQ(failure.GetCaption(), QStringLiteral("The file %1 is not a gallery project.").arg(drawing));
    }
    EXPECT_NO_THROW(RequireProjectFile(scratch.Write(QStringLiteral("a.GALLERY"), "")));
    EXPECT_NO_THROW(RequireProjectFile(scratch.Path(QStringLiteral("new one"))));
    EXPECT_THROW(RequireProjectFile(scratch.Path()), CGenericException);
}

TEST(GallerySaveDialog, AsksForProjectsAndBeforeItOverwritesOne)
{
    using Purpose = CGallerySaveDialog::Purpose;
    for (const Purpose purpose : {Purpose::Save, Purpose::Open}) {
        const CGallerySaveDialog dialog(purpose, QStringLiteral("/Trip.gallery"), nullptr);
        EXPECT_EQ(dialog.nameFilters(), QStringList(QStringLiteral("Image galleries (*.gallery)")));
        EXPECT_EQ(dialog.defaultSuffix(), QStringLiteral("gallery"));
        EXPECT_EQ(dialog.acceptMode(),
                  purpose == Purpose::Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
        EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
    }
}
