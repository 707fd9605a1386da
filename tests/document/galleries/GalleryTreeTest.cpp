#include "TestProject.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "document/galleries/Gallery.h"

namespace {

QString Tree(CGalleryProject& project)
{
    QStringList galleries;
    for (const auto& [index, gallery] : project.GetGalleries()) {
        galleries += QStringLiteral("%1:%2").arg(index).arg(gallery ? CTestProject::Entries(*gallery)
                                                                    : QStringLiteral("null"));
    }
    return galleries.join(QStringLiteral("; "));
}

} // namespace

TEST(GalleryTree, IndexesGoUpFromTheHighest)
{
    CTestProject test;
    EXPECT_EQ(test.project.AddGallery(), 0);
    EXPECT_EQ(test.project.AddGallery(), 1);
    EXPECT_EQ(test.project.AddGallery(), 2);
    test.project.RemoveGallery(1);
    EXPECT_EQ(test.project.AddGallery(), 3);
    EXPECT_EQ(test.project.GetGalleryIndex(test.project.FindGallery(2)), 2);
    EXPECT_EQ(test.project.GetGalleryIndex(nullptr), -1);
}

TEST(GalleryTree, AnUnknownIndexGetsAnEmptyEntryThatNothingStumblesOver)
{
    CTestProject test;
    CGallery& root = test.NewGallery();
    EXPECT_EQ(test.project.GetGallery(5), nullptr);
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:; 5:null"));
    EXPECT_EQ(test.project.GetGalleryIndex(nullptr), -1);
    EXPECT_EQ(test.project.GetParentGallery(5), nullptr);
    EXPECT_EQ(root.AddChild(5), nullptr);
    test.project.RemoveGallery(5);
    EXPECT_EQ(test.project.AddGallery(), 6);
    test.project.Save(test.ProjectPath());
    EXPECT_EQ(test.scratch.Read(QStringLiteral("site/My.gallery")).count("<gallery "), 2);
}

TEST(GalleryTree, TheHighestIndexOfAllIsNotExceeded)
{
    CTestProject test;
    test.LoadXml("<project><gallery index=\"2147483647\"/><gallery index=\"0\"/></project>");
    EXPECT_EQ(test.project.AddGallery(), 1);
    EXPECT_EQ(test.project.AddGallery(), 2);
}

TEST(GalleryTree, AChildIsAddedToTheCurrentOrAnotherGalleryAndTheCurrentOneStays)
{
    CTestProject test;
    test.NewGallery(1);
    EXPECT_EQ(test.project.AddChildGallery(-1), 1);
    EXPECT_EQ(test.project.AddChildGallery(1), 2);
    EXPECT_EQ(test.project.AddChildGallery(7), -1);
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:1.jpg <1>; 1:<2>; 2:"));
    EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 0);
    EXPECT_EQ(test.project.GetParentGallery(2), test.project.FindGallery(1));
    EXPECT_EQ(test.project.GetParentGallery(0), nullptr);
    EXPECT_EQ(test.project.GetParentGallery(9), nullptr);
    EXPECT_EQ(test.project.FindGallery(0)->GetChildren(), std::set<int32_t>{1});
}

TEST(GalleryTree, AParentComesBetweenAGalleryAndItsParent)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"i.html\"/>");
    test.AddLayout(QStringLiteral("b"), "<page file=\"set.html\" multipage=\"1\"/>");
    test.NewGallery(1);
    test.project.AddChildGallery(0);
    test.project.AddChildGallery(0);
    EXPECT_EQ(test.project.AddParentGallery(1), 3);
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:1.jpg <2> <3>; 1:; 2:; 3:<1>"));
    EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 3);
    EXPECT_EQ(test.project.GetRootGalleryIndex(), 0);
    EXPECT_EQ(test.project.FindGallery(3)->GetLayout().GetTemplate()->GetName(), QStringLiteral("Layout b"));
    EXPECT_EQ(test.project.GetParentGallery(1), test.project.FindGallery(3));
}

TEST(GalleryTree, AParentOfTheRootBecomesTheRoot)
{
    CTestProject test;
    test.NewGallery();
    EXPECT_EQ(test.project.AddParentGallery(0), 1);
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:; 1:<0>"));
    EXPECT_EQ(test.project.GetRootGalleryIndex(), 1);
    EXPECT_EQ(test.project.GetParentGallery(0), test.project.FindGallery(1));
    EXPECT_EQ(test.project.GetParentGallery(1), nullptr);
    EXPECT_EQ(test.project.AddParentGallery(9), -1);
    EXPECT_EQ(test.project.GetGalleries().size(), 2u);
}

TEST(GalleryTree, AParentWithABadLayoutLeavesTheTreeAsItWas)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"noextension\" multipage=\"1\"/>");
    test.NewGallery();
    EXPECT_THROW(test.project.AddParentGallery(0), CExceptionBase);
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:"));
    EXPECT_EQ(test.project.GetRootGalleryIndex(), 0);
    EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 0);
}

TEST(GalleryTree, ARootWithoutChildOrWithTwoStays)
{
    CTestProject test;
    test.NewGallery();
    test.project.RemoveGallery(0);
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:"));
    test.project.AddChildGallery(0);
    test.project.AddChildGallery(0);
    test.project.RemoveGallery(0);
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:<1> <2>; 1:; 2:"));
}

TEST(GalleryTree, ARootWithOneChildGivesWayToIt)
{
    CTestProject test;
    test.NewGallery(1);
    test.project.AddChildGallery(0);
    test.project.AddChildGallery(1);
    test.project.RemoveGallery(0);
    EXPECT_EQ(Tree(test.project), QStringLiteral("1:<2>; 2:"));
    EXPECT_EQ(test.project.GetRootGalleryIndex(), 1);
    EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 1);
    EXPECT_TRUE(test.project.FindGallery(1)->GetParentIndexes().empty());
    EXPECT_EQ(test.project.GetParentGallery(2), test.project.FindGallery(1));
}

TEST(GalleryTree, TheChildrenOfAnInnerGalleryMoveUpByTheAddOrderOfTheParentsPage)
{
    const struct {
        const char* page;
        const char* expected;
    } rows[] = {{"end.html", "0:1.jpg <2> <3>; 2:; 3:"}, {"front.html", "0:<3> <2> 1.jpg; 2:; 3:"}};
    for (const auto& row : rows) {
        CTestProject test;
        test.AddLayout(QStringLiteral("a"),
                       "<page file=\"end.html\"/><page file=\"front.html\" add_order=\"front\"/>");
        CGallery& root = test.NewGallery(1);
        test.project.AddChildGallery(0);
        test.project.AddChildGallery(1);
        test.project.AddChildGallery(1);
        test.project.SetCurrentGallery(1);
        root.SetTemplatePage(QString::fromUtf8(row.page));
        test.project.RemoveGallery(1);
        EXPECT_EQ(Tree(test.project), QString::fromUtf8(row.expected));
        EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 0);
        EXPECT_EQ(test.project.GetParentGallery(2), &root);
    }
}

TEST(GalleryTree, RemovingAGalleryThatIsNotThereChangesNothing)
{
    CTestProject test;
    test.NewGallery();
    test.project.RemoveGallery(4);
    test.project.RemoveGallery(-1);
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:"));
}

TEST(GalleryTree, AddingAChildTwiceGivesTheEntryThatIsThere)
{
    CTestProject test;
    CGallery& root = test.NewGallery();
    test.project.AddChildGallery(0);
    EXPECT_EQ(root.AddChild(1), root.FindChildPicture(1));
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:<1>; 1:"));
    root.RemoveChild(2);
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:<1>; 1:"));
}

TEST(GalleryTree, HasNoCircles)
{
    CTestProject test;
    test.NewGallery();
    test.project.AddChildGallery(0);
    test.project.AddChildGallery(1);
    CGallery& grandchild = *test.project.FindGallery(2);
    for (const int32_t index : {0, 1, 2}) {
        EXPECT_EQ(grandchild.AddChild(index), nullptr) << index;
    }
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:<1>; 1:<2>; 2:"));
    EXPECT_NE(test.project.FindGallery(0)->AddChild(2), nullptr); // the other way round there is none
}

TEST(GalleryTree, OfTwoParentsTheFirstInIndexOrderCountsAndBothForgetARemovedChild)
{
    CTestProject test;
    test.NewGallery();
    test.project.AddChildGallery(0);
    test.project.AddChildGallery(0);
    test.project.AddChildGallery(2);
    test.project.FindGallery(1)->AddChild(3);
    EXPECT_EQ(test.project.GetParentGallery(3), test.project.FindGallery(1));
    test.project.RemoveGallery(3);
    EXPECT_EQ(Tree(test.project), QStringLiteral("0:<1> <2>; 1:; 2:"));
}

TEST(GalleryTree, TheCurrentGalleryIsAlwaysOneThatExists)
{
    CTestProject test;
    test.NewGallery();
    test.project.AddChildGallery(0);
    test.project.SetCurrentGallery(1);
    EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 1);
    test.project.SetCurrentGallery(8);
    EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 1);
    EXPECT_EQ(test.project.GetGalleries().size(), 2u);
}

TEST(GalleryTree, TheCurrentGalleryStaysWhenAnotherOneIsRemoved)
{
    CTestProject test;
    test.NewGallery();
    test.project.AddChildGallery(0);
    test.project.AddChildGallery(1);
    test.project.SetCurrentGallery(2);
    test.project.RemoveGallery(1);
    EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 2);
    EXPECT_EQ(test.project.GetRootGalleryIndex(), 0);
}
