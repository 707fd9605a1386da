#include "editing/EditHistory.h"

#include <QFile>
#include <gtest/gtest.h>

#include "../document/TestProject.h"
#include "common/Exceptions.h"
#include "editing/GalleryActs.h"
#include "editing/LookActs.h"
#include "editing/PictureActs.h"
#include "editing/TextActs.h"

namespace {

// A project of one gallery with the pictures 1.jpg to 4.jpg.
class EditHistory : public testing::Test {
protected:
    CTestProject test;
    std::vector<Edited> heard;
    CEditHistory history{test.project, [this](const Edited& edited) {
                             heard.push_back(edited);
                         }};

    void SetUp() override
    {
        test.AddStandard();
        test.AddStyle(QStringLiteral("red"));
        test.NewGallery(4);
    }

    CGallery& Root() { return *test.project.GetRootGallery(); }
    QString Entries(int32_t gallery = 0) { return CTestProject::Entries(*test.project.FindGallery(gallery)); }
    QUndoStack& Stack() { return history.GetStack(); }
};

} // namespace

TEST_F(EditHistory, AnActIsTakenBackAndDoneAnew)
{
    const QString before = Entries();
    EXPECT_TRUE(history.Do(RemovePictures(test.project, 0, {0, 2})));
    const QString after = Entries();
    EXPECT_NE(after, before);
    EXPECT_EQ(Stack().undoText(), QStringLiteral("Delete 2 Pictures"));
    Stack().undo();
    EXPECT_EQ(Entries(), before);
    EXPECT_EQ(Stack().redoText(), QStringLiteral("Delete 2 Pictures"));
    Stack().redo();
    EXPECT_EQ(Entries(), after);
}

TEST_F(EditHistory, WhatChangesNothingIsNoStep)
{
    const Act acts[] = {
        TurnPictures(7, {0}, true),
        TurnPictures(0, {}, true),
        TurnPictures(0, {-1, 99}, true),
        AddPictures(0, {Root().GetPictures().GetAt(0)->GetPath()}),
        MovePicturesBefore(0, {1, 2}, 2),
        SortPictures(0, {0, 1, 2, 3}),
        SortPictures(0, {3, 2, 1}),
        SortPictures(0, {0, 0, 1, 2}),
        MovePicturesTo(0, {0}, 0),
        ChooseStyle(0, QStringLiteral("blue.xml")),
        RenameGallery(5, QStringLiteral("x")),
        RemoveGalleryAct(test.project, 0),
        MoveGalleryTo(test.project, 0, 0, 0),
        DuplicateGalleryAct(test.project, 0),
    };
    // A style is the page's own once it was chosen for it.
    Root().SetStyle(QStringLiteral("blue.xml"));
    for (const Act& act : acts) {
        EXPECT_FALSE(history.Do(act)) << qPrintable(act.name);
    }
    EXPECT_FALSE(Stack().canUndo());
    EXPECT_TRUE(heard.empty());
}

TEST_F(EditHistory, AnActThatFailsChangesNothing)
{
    const Act act{.name = QStringLiteral("Fail"), .galleries = {0}, .apply = [](CGalleryProject& project) {
                      project.GetRootGallery()->RotatePicture(0, true);
                      project.GetRootGallery()->RemovePicture(1);
                      project.AddChildGallery(0);
                      throw CGenericException(QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"));
                  }};
    const QString before = Entries();
    EXPECT_THROW(history.Do(act), CGenericException);
    EXPECT_EQ(Entries(), before);
    EXPECT_EQ(Root().GetPictures().GetAt(0)->GetAngle(), 0);
    EXPECT_EQ(test.project.GetGalleries().size(), 1U);
    EXPECT_FALSE(Stack().canUndo());
    EXPECT_TRUE(heard.empty());
}

TEST_F(EditHistory, AHundredStepsAreKept)
{
    for (int i = 0; i < CEditHistory::StepCount + 20; ++i) {
        history.Do(TurnPictures(0, {0}, true));
    }
    int taken = 0;
    for (; Stack().canUndo(); ++taken) {
        Stack().undo();
    }
    EXPECT_EQ(taken, CEditHistory::StepCount);
}

TEST_F(EditHistory, ThePersonComesBackToThePageOfTheAct)
{
    const int32_t child = test.project.AddChildGallery(0);
    Root().SetTemplatePage(QStringLiteral("picture.html"));
    Root().GetLayout().SetPageNumber(3);
    history.Do(TurnPictures(0, {3}, true));
    heard.clear();
    Root().SetTemplatePage(QStringLiteral("index.html"));
    test.project.SetCurrentGallery(child);
    Stack().undo();
    EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 0);
    EXPECT_EQ(Root().GetLayout().GetTemplatePage(), QStringLiteral("picture.html"));
    EXPECT_EQ(Root().GetLayout().GetPageNumber(), 3);
}

TEST_F(EditHistory, SaysWhatWasTouched)
{
    history.Do(TurnPictures(0, {0}, true));
    history.Do(AddGalleryBelow(0));
    history.Do(RenameGallery(1, QStringLiteral("Sea")));
    history.Do(InsertGalleryAbove(test.project, 0));
    history.Do(ChooseStyle(0, QStringLiteral("red.xml")));
    Stack().undo();
    Stack().redo();
    struct Line {
        std::set<int32_t> galleries;
        std::set<int32_t> pictureLists;
        bool isTreeChanged;
        Edited::Way way;
    };
    const Line lines[] = {
        {{0}, {0}, false, Edited::Way::Done},  {{0, 1}, {0, 1}, true, Edited::Way::Done},
        {{1}, {}, true, Edited::Way::Done},    {{2}, {2}, true, Edited::Way::Done},
        {{0}, {}, false, Edited::Way::Done},   {{0}, {}, false, Edited::Way::Undone},
        {{0}, {}, false, Edited::Way::Redone},
    };
    ASSERT_EQ(heard.size(), std::size(lines));
    for (size_t i = 0; i < heard.size(); ++i) {
        EXPECT_EQ(heard[i].galleries, lines[i].galleries) << i;
        EXPECT_EQ(heard[i].pictureLists, lines[i].pictureLists) << i;
        EXPECT_EQ(heard[i].isTreeChanged, lines[i].isTreeChanged) << i;
        EXPECT_EQ(heard[i].way, lines[i].way) << i;
    }
}

TEST_F(EditHistory, TheStepsEndWithTheProject)
{
    history.Do(TurnPictures(0, {0}, true));
    history.Clear();
    EXPECT_FALSE(Stack().canUndo());
}

TEST_F(EditHistory, AFileThatHasGoneMeanwhileComesBackAsNotThere)
{
    const QString path = Root().GetPictures().GetAt(0)->GetPath();
    history.Do(RemovePictures(test.project, 0, {0}));
    ASSERT_TRUE(QFile::remove(path));
    Stack().undo();
    EXPECT_FALSE(Root().GetPictures().GetAt(0)->IsThere());
}

// --- What single acts do.

TEST_F(EditHistory, SeveralPicturesMoveTogetherAndKeepTheirOrder)
{
    const struct {
        std::vector<int32_t> moved;
        int32_t before;
        const char* entries;
    } rows[] = {
        {{0}, 4, "2.jpg 3.jpg 4.jpg 1.jpg"},       {{3}, 0, "4.jpg 1.jpg 2.jpg 3.jpg"},
        {{0, 2}, 2, "2.jpg 1.jpg 3.jpg 4.jpg"},    {{1, 3}, 0, "2.jpg 4.jpg 1.jpg 3.jpg"},
        {{3, 0, 0}, 2, "2.jpg 1.jpg 4.jpg 3.jpg"},
    };
    for (const auto& row : rows) {
        history.Do(MovePicturesBefore(0, row.moved, row.before));
        EXPECT_EQ(Entries(), QString::fromLatin1(row.entries));
        Stack().undo();
        EXPECT_EQ(Entries(), QStringLiteral("1.jpg 2.jpg 3.jpg 4.jpg"));
    }
}

TEST_F(EditHistory, UpAndDownChangePlacesWithTheOtherEnd)
{
    history.Do(MovePictureUp(0, 0));
    EXPECT_EQ(Entries(), QStringLiteral("4.jpg 2.jpg 3.jpg 1.jpg"));
    history.Do(MovePictureDown(0, 3));
    EXPECT_EQ(Entries(), QStringLiteral("1.jpg 2.jpg 3.jpg 4.jpg"));
    history.Do(MovePictureDown(0, 1));
    EXPECT_EQ(Entries(), QStringLiteral("1.jpg 3.jpg 2.jpg 4.jpg"));
}

TEST_F(EditHistory, PicturesAreAddedInFrontOfOne)
{
    const QString a = test.MakePicture(QStringLiteral("a.jpg"));
    const QString b = test.MakePicture(QStringLiteral("b.jpg"));
    history.Do(AddPicturesBefore(0, {a, Root().GetPictures().GetAt(3)->GetPath(), b}, 1));
    EXPECT_EQ(Entries(), QStringLiteral("1.jpg a.jpg b.jpg 2.jpg 3.jpg 4.jpg"));
}

TEST_F(EditHistory, PicturesGoToAnotherGalleryWithTheirTextsAndAngles)
{
    const int32_t child = test.project.AddChildGallery(0);
    history.Do(TurnPictures(0, {1}, true));
    history.Do(
        EditText(test.project, 0,
                 {.place = {.owner = TextPlace::Owner::Picture, .name = QStringLiteral("t"), .position = 1},
                  .text = CVariant(QStringLiteral("Sea"))}));
    history.Do(CopyPicturesTo(0, {3}, child));
    history.Do(MovePicturesTo(0, {1, 3, 4}, child));
    // The target has the last one already, and a gallery doesn't go.
    EXPECT_EQ(Entries(), QStringLiteral("1.jpg 3.jpg 4.jpg <1>"));
    EXPECT_EQ(Entries(child), QStringLiteral("4.jpg 2.jpg"));
    const CPictureInfo& moved = *test.project.FindGallery(child)->GetPictures().GetAt(1);
    EXPECT_EQ(moved.GetAngle(), 1);
    EXPECT_EQ(moved.GetVariable(QStringLiteral("t")), CVariant(QStringLiteral("Sea")));
}

TEST_F(EditHistory, AGalleryMovesWithAllBelowItButNotBelowItself)
{
    const int32_t a = test.project.AddChildGallery(0);
    const int32_t b = test.project.AddChildGallery(0);
    const int32_t below = test.project.AddChildGallery(a);
    EXPECT_FALSE(history.Do(MoveGalleryTo(test.project, a, below, 0)));
    EXPECT_FALSE(history.Do(MoveGalleryTo(test.project, a, a, 0)));
    EXPECT_TRUE(history.Do(MoveGalleryTo(test.project, a, b, 0)));
    EXPECT_EQ(Entries(), QStringLiteral("1.jpg 2.jpg 3.jpg 4.jpg <2>"));
    EXPECT_EQ(Entries(b), QStringLiteral("<1>"));
    EXPECT_EQ(Entries(a), QStringLiteral("<3>"));
    EXPECT_TRUE(history.Do(MoveGalleryTo(test.project, a, 0, 1)));
    EXPECT_EQ(Entries(), QStringLiteral("1.jpg <1> 2.jpg 3.jpg 4.jpg <2>"));
    EXPECT_TRUE(history.Do(MoveGalleryTo(test.project, a, 0, 5)));
    EXPECT_EQ(Entries(), QStringLiteral("1.jpg 2.jpg 3.jpg 4.jpg <1> <2>"));
}

TEST_F(EditHistory, ADuplicateStandsBesideItsOriginalWithAllBelowIt)
{
    const int32_t a = test.project.AddChildGallery(0);
    test.project.AddChildGallery(a);
    test.project.FindGallery(a)->AddPicture(test.MakePicture(QStringLiteral("a.jpg")));
    history.Do(RenameGallery(a, QStringLiteral("Sea")));
    history.Do(DuplicateGalleryAct(test.project, a));
    EXPECT_EQ(Entries(), QStringLiteral("1.jpg 2.jpg 3.jpg 4.jpg <1> <3>"));
    EXPECT_EQ(Entries(3), QStringLiteral("<4> a.jpg"));
    EXPECT_EQ(test.ValueOf(*test.project.FindGallery(3), QStringLiteral("gallery"), QStringLiteral("title")),
              QStringLiteral("Sea"));
    Stack().undo();
    EXPECT_EQ(test.project.GetGalleries().size(), 3U);
}

TEST_F(EditHistory, AnInsertedGalleryTakesThePlaceOfTheOneBelowIt)
{
    const int32_t a = test.project.AddChildGallery(0);
    const int32_t b = test.project.AddChildGallery(0);
    const int32_t c = test.project.AddChildGallery(0);
    history.Do(MoveGalleryTo(test.project, b, 0, 1));
    const QString before = QStringLiteral("1.jpg <2> 2.jpg 3.jpg 4.jpg <1> <3>");
    ASSERT_EQ(Entries(), before);
    const struct {
        int32_t gallery;
        const char* entries;
    } rows[] = {
        {a, "1.jpg <2> 2.jpg 3.jpg 4.jpg <4> <3>"},
        {b, "1.jpg <4> 2.jpg 3.jpg 4.jpg <1> <3>"},
        {c, "1.jpg <2> 2.jpg 3.jpg 4.jpg <1> <4>"},
    };
    for (const auto& row : rows) {
        ASSERT_TRUE(history.Do(InsertGalleryAbove(test.project, row.gallery)));
        EXPECT_EQ(Entries(), QString::fromLatin1(row.entries));
        EXPECT_EQ(Entries(4), QStringLiteral("<%1>").arg(row.gallery));
        EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 4);
        Stack().undo();
        EXPECT_EQ(Entries(), before);
    }
}

// The place is the same whichever end of the list the layout adds to.
TEST_F(EditHistory, AnInsertedGalleryTakesThatPlaceWhereNewPicturesComeFirst)
{
    test.AddLayout(QStringLiteral("top"), "<page file=\"index.html\" add_order=\"front\" multipage=\"1\"/>");
    test.AddPage(QStringLiteral("top"), QStringLiteral("index.html"), 4);
    test.NewGallery(4);
    test.project.AddChildGallery(0);
    test.project.AddChildGallery(0);
    history.Do(MoveGalleryTo(test.project, 2, 0, 2));
    const QString before = QStringLiteral("1.jpg 2.jpg <2> 3.jpg 4.jpg <1>");
    ASSERT_EQ(Entries(), before);
    Root().SetTemplate(QStringLiteral("top.xml"));
    ASSERT_TRUE(Root().GetLayout().IsAddedAtFront());
    history.Do(InsertGalleryAbove(test.project, 2));
    EXPECT_EQ(Entries(), QStringLiteral("1.jpg 2.jpg <3> 3.jpg 4.jpg <1>"));
    Stack().undo();
    EXPECT_EQ(Entries(), before);
    history.Do(InsertGalleryAbove(test.project, 1));
    EXPECT_EQ(Entries(), QStringLiteral("1.jpg 2.jpg <2> 3.jpg 4.jpg <3>"));
}

TEST_F(EditHistory, DeletingAGallerySaysWhatGoesAndWhatMovesUp)
{
    const auto noticeOf = [&](int pictures, int children) {
        const int32_t gallery = test.project.AddChildGallery(0);
        for (int i = 0; i < pictures; ++i) {
            test.project.FindGallery(gallery)->AppendPicture(
                test.MakePicture(QStringLiteral("n%1.jpg").arg(i)), 0);
        }
        for (int i = 0; i < children; ++i) {
            test.project.AddChildGallery(gallery);
        }
        history.Do(RemoveGalleryAct(test.project, gallery));
        return heard.back().notice;
    };
    EXPECT_EQ(noticeOf(0, 0), QStringLiteral("The gallery was deleted."));
    EXPECT_EQ(noticeOf(1, 0), QStringLiteral("The gallery was deleted, and the picture in it with it."));
    EXPECT_EQ(noticeOf(3, 0), QStringLiteral("The gallery was deleted, and the 3 pictures in it with it."));
    EXPECT_EQ(noticeOf(0, 1), QStringLiteral("The gallery was deleted. The gallery below it has moved up."));
    EXPECT_EQ(noticeOf(2, 2), QStringLiteral("The gallery was deleted, and the 2 pictures in it with it. "
                                             "The 2 galleries below it have moved up."));
}
