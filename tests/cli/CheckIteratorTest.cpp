#include "cli/CheckIterator.h"

#include <gtest/gtest.h>

#include "support/QtPrinters.h"

namespace {

QString Value(CCheckIterator& iterator, const char* object, const char* name)
{
    CVariant value;
    iterator.GetVariable(QString::fromLatin1(object), QString::fromLatin1(name), value);
    return value.IsEmpty() ? QStringLiteral("nothing") : value.GetString();
}

} // namespace

TEST(CheckIterator, KnowsTheFolderOfTheLayoutAndNothingElseOfTheGallery)
{
    CCheckIterator iterator(QStringLiteral("/layouts/Own/"));
    EXPECT_EQ(Value(iterator, "gallery", "TEMPLATE_DIRECTORY"), "/layouts/Own/");
    EXPECT_EQ(Value(iterator, "Gallery", "title"), "nothing");
    EXPECT_EQ(Value(iterator, "content", "images_count"), "nothing");
    EXPECT_EQ(Value(iterator, "advertisement", "below"), "nothing");
    EXPECT_EQ(Value(iterator, "nobody", "name"), "ERROR:Invalid object name: nobody.");
}

TEST(CheckIterator, AnswersWithAnErrorTextForAnIdUntilItsPictureIsBound)
{
    CCheckIterator iterator{QString()};
    EXPECT_EQ(Value(iterator, "photo", "title"), "ERROR:Invalid object name: photo.");
    iterator.BindPicture(QStringLiteral("Photo"));
    EXPECT_EQ(Value(iterator, "PHOTO", "title"), "nothing");
}

TEST(CheckIterator, CountsEachOwnPictureOnceAndNoReference)
{
    CCheckIterator iterator{QString()};
    EXPECT_EQ(iterator.GetPicturesPerPage(), 0);
    EXPECT_EQ(iterator.GetPageCount(), 0);
    iterator.BindPictureReference(QStringLiteral("next"), 1, 0);
    EXPECT_EQ(iterator.GetPicturesPerPage(), 0);
    iterator.BindPicture(QStringLiteral("a"));
    iterator.BindPicture(QStringLiteral("A"));
    iterator.BindPicture(QStringLiteral("next"));
    EXPECT_EQ(iterator.GetPicturesPerPage(), 1);
    EXPECT_GT(iterator.GetPageCount(), 1);
    EXPECT_GT(iterator.GetPictureCount(), 11);
}

TEST(CheckIterator, KeepsVariablesOfThePageForLoops)
{
    CCheckIterator iterator{QString()};
    EXPECT_EQ(Value(iterator, "page", "blog_index"), "nothing");
    iterator.SetVariable(QStringLiteral("page"), QStringLiteral("Blog_Index"), CVariant(QStringLiteral("3")));
    iterator.SetVariable(QStringLiteral("gallery"), QStringLiteral("title"), CVariant(QStringLiteral("T")));
    EXPECT_EQ(Value(iterator, "page", "blog_index"), "3");
    EXPECT_EQ(Value(iterator, "gallery", "title"), "nothing");
}
