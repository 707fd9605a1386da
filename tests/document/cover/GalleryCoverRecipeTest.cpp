#include <gtest/gtest.h>

#include "TestProject.h"
#include "common/FileSystem.h"
#include "document/cover/CoverComposition.h"
#include "document/galleries/Gallery.h"
#include "imaging/Image.h"

// Covers that are made on another thread.

namespace {

// As another thread does it.
void MakeFrom(CGallery& gallery, const CGalleryCover::Recipe& recipe)
{
    const QString file = gallery.GetCover().GetName() + QStringLiteral("~1.png");
    SaveCover(file, recipe.pictures);
    gallery.GetCover().Accept(recipe.revision, {.file = file, .key = QByteArray()});
    EXPECT_FALSE(FileExists(file));
}

class GalleryCoverRecipe : public testing::Test {
protected:
    // The root gallery is gallery 0.
    GalleryCoverRecipe() { root = &test.NewGallery(); }

    QString Picture(const char* name)
    {
        const QString path = test.scratch.Write(QStringLiteral("pictures/") + QString::fromLatin1(name), "");
        CImage::FromRgba(QSize(40, 30), QByteArray(40 * 30 * 4, name[0]))
            .Save(path, {.format = ImageEncoding::Format::Png, .quality = 100});
        return path;
    }

    CGallery& NewChild(int32_t parent = 0)
    {
        return *test.project.FindGallery(test.project.AddChildGallery(parent));
    }

    CTestProject test;
    CGallery* root;
};

} // namespace

TEST_F(GalleryCoverRecipe, CanBeMadeFromItsRecipe)
{
    root->AddPicture(Picture("a.png"));
    EXPECT_EQ(root->GetCover().FindUnmade(), &root->GetCover());
    MakeFrom(*root, root->GetCover().HandOut());
    EXPECT_EQ(root->GetCover().FindUnmade(), nullptr);
    const QByteArray made = ReadWholeFile(root->GetCover().GetName());
    root->UpdateCover(0);
    EXPECT_EQ(ReadWholeFile(root->GetCoverPath()), made);
}

TEST_F(GalleryCoverRecipe, ThatShowsOtherCoversWaitsForThem)
{
    CGallery& child = NewChild();
    CGallery& grandchild = NewChild(child.GetIndex());
    EXPECT_EQ(root->GetCover().FindUnmade(), &grandchild.GetCover());
    MakeFrom(grandchild, grandchild.GetCover().HandOut());
    EXPECT_EQ(root->GetCover().FindUnmade(), &child.GetCover());
    MakeFrom(child, child.GetCover().HandOut());
    EXPECT_EQ(root->GetCover().FindUnmade(), &root->GetCover());
    EXPECT_EQ(child.GetCover().FindUnmade(), nullptr);
}

TEST_F(GalleryCoverRecipe, ThatHasChangedMeanwhileIsNotTakenFromItsOldRecipe)
{
    root->AddPicture(Picture("a.png"));
    root->AddPicture(Picture("b.png"));
    const CGalleryCover::Recipe old = root->GetCover().HandOut();
    const QString name = root->GetCover().GetName();
    root->RotatePicture(0, true);
    EXPECT_EQ(root->GetCover().GetName(), name); // the same name, other pixels
    EXPECT_NE(root->GetCover().GetRevision(), old.revision);
    MakeFrom(*root, old);
    EXPECT_EQ(root->GetCover().FindUnmade(), &root->GetCover());
    EXPECT_FALSE(FileExists(name));
}

TEST_F(GalleryCoverRecipe, ThatWasMadeMeanwhileStays)
{
    root->AddPicture(Picture("a.png"));
    const CGalleryCover::Recipe recipe = root->GetCover().HandOut();
    WriteFileAtomically(root->GetCoverPath(), "made");
    MakeFrom(*root, recipe);
    EXPECT_EQ(ReadWholeFile(root->GetCover().GetName()), "made");
}

// Its pixels may be on their way into the covers above.
TEST_F(GalleryCoverRecipe, WhoseRecipeWasHandedOutTellsThoseAboveOfAChange)
{
    CGallery& child = NewChild();
    child.AddPicture(Picture("a.png"));
    child.AddPicture(Picture("b.png"));
    child.GetCover().HandOut();
    const int64_t above = root->GetCover().GetRevision();
    child.RotatePicture(0, true);
    EXPECT_NE(root->GetCover().GetRevision(), above);
}
