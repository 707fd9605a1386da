#include "editing/PictureClip.h"

#include <gtest/gtest.h>

#include "../document/TestProject.h"
#include "common/xmldomutils.h"
#include "editing/EditHistory.h"
#include "editing/GalleryActs.h"
#include "editing/PictureActs.h"

namespace {

// A project of one gallery with the pictures 1.jpg to 4.jpg.
class PictureClip : public testing::Test {
protected:
    CTestProject test;
    CEditHistory history{test.project, [](const Edited&) {
                         }};

    void SetUp() override
    {
        test.AddStandard();
        test.NewGallery(4);
    }
    CGallery& Root() { return *test.project.GetRootGallery(); }
    CPictureInfo& At(int32_t position) { return *Root().GetPictures().GetAt(position); }
    QString Entries(int32_t gallery = 0) { return CTestProject::Entries(*test.project.FindGallery(gallery)); }
};

CXmlRest UnknownAttribute()
{
    const std::unique_ptr<CXmlDocument> document = CreateDocument();
    CXmlElement element = document->CreateRoot("picture");
    element.SetAttribute("stars", QStringLiteral("5 & more"));
    return CXmlRest(element, {});
}

} // namespace

TEST_F(PictureClip, APictureComesBackWithAllThatBelongsToIt)
{
    CPictureInfo& picture = At(1);
    picture.SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("\"Über\" <b>\n日本")));
    picture.SetVariable(QStringLiteral("stars"), CVariant(-3));
    picture.SetVariable(QStringLiteral("share"), CVariant::Real(0.1));
    picture.SetVariable(QStringLiteral("seen"), CVariant::Date(45000.123456789));
    picture.SetVariable(QStringLiteral("none"), CVariant());
    picture.SetRest(UnknownAttribute());
    Root().RotatePicture(1, false);
    const std::vector<CFilePictureInfo> read = ReadClip(WriteClip(Root(), {1, 3}));
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].GetPath(), picture.GetPath());
    EXPECT_EQ(read[0].GetAngle(), 3);
    EXPECT_TRUE(read[0].IsThere());
    EXPECT_EQ(read[0].GetRest(), picture.GetRest());
    for (const char* name : {"title", "stars", "share", "seen"}) {
        const QString text = QString::fromLatin1(name);
        EXPECT_EQ(read[0].GetVariable(text), picture.GetVariable(text)) << name;
    }
    EXPECT_EQ(read[0].GetVariables().GetEntries().count(QStringLiteral("none")), 0U);
    EXPECT_EQ(read[1].GetPath(), At(3).GetPath());
}

TEST_F(PictureClip, ChildGalleriesHaveNoPlaceThere)
{
    history.Do(AddGalleryBelow(0));
    const int32_t last = Root().GetPictures().GetCount() - 1;
    EXPECT_EQ(ReadClip(WriteClip(Root(), {0, last})).size(), 1U);
    EXPECT_TRUE(ReadClip(WriteClip(Root(), {last, 99, -1})).empty());
}

TEST_F(PictureClip, WhatIsNoClipIsEmpty)
{
    for (const char* bytes :
         {"", "{}", "[", "[1, \"a\", null]", "[{\"angle\": 1}]", "[{\"path\": 7}]", "\xff"}) {
        EXPECT_TRUE(ReadClip(bytes).empty()) << bytes;
    }
    const std::vector<CFilePictureInfo> odd =
        ReadClip("[{\"path\": \"/a.jpg\", \"angle\": 99, \"texts\": {\"t\": 3, \"u\": {\"type\": 77}}, "
                 "\"rest\": \"%%\"}]");
    ASSERT_EQ(odd.size(), 1U);
    EXPECT_EQ(odd[0].GetAngle(), 3);
    EXPECT_FALSE(odd[0].IsThere());
    EXPECT_TRUE(odd[0].GetVariables().GetEntries().empty());
    EXPECT_TRUE(odd[0].GetRest().IsEmpty());
}

TEST_F(PictureClip, IsPastedInFrontOfAPictureAndTakenBack)
{
    At(3).SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("Four")));
    const std::vector<CFilePictureInfo> clip = ReadClip(WriteClip(Root(), {2, 3}));
    const QString before = Entries();
    ASSERT_TRUE(history.Do(CutPictures(test.project, 0, {2, 3})));
    EXPECT_EQ(history.GetStack().undoText(), QStringLiteral("Cut 2 Pictures"));
    EXPECT_EQ(Root().GetPictures().GetCount(), 2);
    ASSERT_TRUE(history.Do(PastePictures(0, clip, 1)));
    EXPECT_EQ(history.GetStack().undoText(), QStringLiteral("Paste 2 Pictures"));
    const QString after = Entries();
    EXPECT_EQ(At(2).GetVariable(QStringLiteral("title")), CVariant(QStringLiteral("Four")));
    EXPECT_TRUE(At(3).GetPath().endsWith(QStringLiteral("2.jpg")));
    history.GetStack().undo();
    history.GetStack().undo();
    EXPECT_EQ(Entries(), before);
    history.GetStack().redo();
    history.GetStack().redo();
    EXPECT_EQ(Entries(), after);
}

TEST_F(PictureClip, PicturesThatAreThereStayAsTheyAre)
{
    const std::vector<CFilePictureInfo> clip = ReadClip(WriteClip(Root(), {0, 1}));
    At(0).SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("New")));
    EXPECT_FALSE(history.Do(PastePictures(0, clip, -1)));
    EXPECT_EQ(At(0).GetVariable(QStringLiteral("title")), CVariant(QStringLiteral("New")));
}

TEST_F(PictureClip, ChildGalleriesStayWhenFilesAreTakenOut)
{
    history.Do(AddGalleryBelow(0));
    const int32_t count = Root().GetPictures().GetCount();
    const std::vector<int32_t> all = {0, 1, 2, 3, 4};
    ASSERT_EQ(count, 5);
    ASSERT_TRUE(history.Do(TakeOutFiles(test.project, 0, all)));
    EXPECT_EQ(Root().GetPictures().GetCount(), 1);
    EXPECT_TRUE(test.project.FindGallery(1));
    EXPECT_EQ(history.GetStack().undoText(), QStringLiteral("Delete 4 Pictures"));
}
