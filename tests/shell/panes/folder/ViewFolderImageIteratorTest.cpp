#include "shell/panes/folder/ViewFolderImageIterator.h"

#include <gtest/gtest.h>

#include "document/galleries/Gallery.h"
#include "support/ProjectFixture.h"

namespace {

CViewFolderImageIterator::Collection CollectionOf(const QStringList& paths)
{
    CViewFolderImageIterator::Collection collection;
    for (const QString& path : paths) {
        collection.push_back(std::make_unique<CFilePictureInfo>(path, 0));
        collection.back()->SetThumbnailPath(path + QStringLiteral(".card"));
    }
    return collection;
}

// What the iterator shows.
QString Walk(CViewFolderImageIterator& iterator)
{
    QString shown;
    for (iterator.Reset(); iterator.HasPicture(); iterator.NextPicture()) {
        shown += QString::number(iterator.GetIndex());
    }
    return shown;
}

class FolderIterator : public testing::Test {
protected:
    FolderIterator()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "");
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.NewProject();
    }

    CProjectFixture fixture;
    const CViewFolderImageIterator::Collection collection =
        CollectionOf({QStringLiteral("/f/a.jpg"), QStringLiteral("/f/B.jpg"), QStringLiteral("/f/c.jpg"),
                      QStringLiteral("/f/d.jpg")});
    CViewFolderImageIterator iterator{collection};
};

} // namespace

TEST_F(FolderIterator, WalksPastHiddenPictures)
{
    iterator.SetCollection();
    EXPECT_EQ(Walk(iterator), QStringLiteral("0123"));
    iterator.HidePicture(0);
    iterator.HidePicture(2);
    EXPECT_EQ(Walk(iterator), QStringLiteral("13"));
    iterator.HidePicture(3);
    iterator.HidePicture(1);
    EXPECT_EQ(Walk(iterator), QString());
    EXPECT_EQ(iterator.GetPictureCount(), 4);
}

TEST_F(FolderIterator, GivesThePathOfTheThumbnail)
{
    iterator.SetCollection();
    iterator.HidePicture(0);
    iterator.Reset();
    QString path;
    EXPECT_EQ(iterator.GetPicturePath(path), QStringLiteral("/f/B.jpg.card"));
    EXPECT_EQ(path, QStringLiteral("/f/B.jpg.card"));
    EXPECT_EQ(iterator.GetCurrentPicture(), collection[1].get());
}

TEST_F(FolderIterator, HidesThePicturesOfTheGalleryAndNoOthers)
{
    iterator.SetCollection();
    fixture.GetRoot().AppendPicture(QStringLiteral("/f/B.jpg"), 0);
    fixture.GetRoot().AppendPicture(QStringLiteral("/f/c.JPG"), 0); // another one than "c.jpg"
    fixture.GetRoot().AppendPicture(QStringLiteral("/other/a.jpg"), 0);
    fixture.GetRoot().AppendPicture(QStringLiteral("/f/d.jpg"), 0);
    iterator.HidePicture(0);
    iterator.SetGallery(&fixture.GetRoot());
    EXPECT_EQ(Walk(iterator), QStringLiteral("02"));
    fixture.GetRoot().RemovePicture(3);
    iterator.SetGallery(&fixture.GetRoot());
    EXPECT_EQ(Walk(iterator), QStringLiteral("023"));
    iterator.SetGallery(nullptr);
    EXPECT_EQ(Walk(iterator), QStringLiteral("0123"));
}

TEST_F(FolderIterator, FindsAPictureByItsPath)
{
    iterator.SetCollection();
    EXPECT_EQ(iterator.FindIndex(QStringLiteral("/f/c.jpg")), 2);
    EXPECT_EQ(iterator.FindIndex(QStringLiteral("/F/C.jpg")), -1);
    EXPECT_EQ(iterator.FindIndex(QStringLiteral("/f/x.jpg")), -1);
}

TEST_F(FolderIterator, KnowsNothingThatOnlyAGalleryCanTell)
{
    iterator.SetCollection();
    CVariant value;
    EXPECT_FALSE(iterator.GetVariable(QStringLiteral("gallery"), QStringLiteral("title"), value));
    EXPECT_FALSE(iterator.GetPageProperty(0, QStringLiteral("number"), value));
    EXPECT_EQ(iterator.GetPageFileName(0), QString());
    EXPECT_TRUE(iterator.IsElementVisible(QStringLiteral("Footer")));
    iterator.BindPicture(QStringLiteral("i0"));
    EXPECT_EQ(Walk(iterator), QStringLiteral("0123"));
}
