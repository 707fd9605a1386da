#include "shell/frame/GalleryCommands.h"

#include <gtest/gtest.h>

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
