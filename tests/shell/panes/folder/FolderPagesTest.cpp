#include "shell/panes/folder/FolderPages.h"

#include <gtest/gtest.h>

#include "shell/panes/folder/ViewFolderImageIterator.h"

namespace {

std::string ListOf(const QString& folder, int count)
{
    CViewFolderImageIterator::Collection collection;
    for (int i = 0; i < count; ++i) {
        collection.push_back(std::make_unique<CFilePictureInfo>(QStringLiteral("/f/%1.jpg").arg(i), 0));
        collection.back()->SetThumbnailPath(QStringLiteral("/c/%1 #.jpg").arg(i));
    }
    CViewFolderImageIterator iterator(collection);
    iterator.SetCollection();
    if (count > 2) {
        iterator.HidePicture(1);
    }
    return BuildListPage({.folder = folder, .card = QSize(120, 90)}, iterator);
}

bool Contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

size_t Count(const std::string& text, const std::string& part)
{
    size_t count = 0;
    for (size_t place = text.find(part); place != std::string::npos; place = text.find(part, place + 1)) {
        ++count;
    }
    return count;
}

} // namespace

TEST(FolderPages, TheCardFitsTheViewBesideItsScrollBar)
{
    const struct {
        int width;
        QSize card;
    } rows[] = {
        {340, QSize(300, 225)}, {341, QSize(301, 225)}, {342, QSize(302, 226)}, {343, QSize(303, 227)},
        {140, QSize(100, 75)},  {80, QSize(40, 30)},    {30, QSize(16, 12)},    {0, QSize(16, 12)},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CardSize(row.width), row.card) << row.width;
    }
}

TEST(FolderPages, TheHeadingCountsAllPictures)
{
    EXPECT_TRUE(
        Contains(ListOf(QStringLiteral("/p/Sea"), 0), "<tr><th align=left>Sea ( 0 pictures ) </th></tr>\n"));
    EXPECT_TRUE(
        Contains(ListOf(QStringLiteral("/p/Sea/"), 1), "<tr><th align=left>Sea ( 1 picture ) </th></tr>\n"));
    EXPECT_TRUE(Contains(ListOf(QStringLiteral("/p/a & <b>"), 3),
                         "<tr><th align=left>a &amp; &lt;b&gt; ( 3 pictures ) </th></tr>\n"));
    EXPECT_TRUE(Contains(ListOf(QStringLiteral("/"), 2), "<tr><th align=left>/ ( 2 pictures ) </th></tr>\n"));
}

TEST(FolderPages, EachPictureThatIsNotHiddenHasARow)
{
    const std::string page = ListOf(QStringLiteral("/f"), 45);
    EXPECT_EQ(Count(page, "_row\"><td colspan=2>"), 44u);
    EXPECT_TRUE(Contains(page, "<a  onclick=\"hideObject(i44_row);\" href=\"addpicture44\" id=\"i44_href\"\">"
                               "<img id=\"i44\" src=\"/c/44 %23.jpg\" alt=\"Add picture\""));
    EXPECT_FALSE(Contains(page, "id=\"i1\""));
    EXPECT_TRUE(Contains(page, "onclick=\"window.external.AddImage('i7');hideObject(i7_row);\""));
    EXPECT_TRUE(Contains(page, "bgcolor=\"#cbd5e4\""));
    // In blocks that are filled when they are needed.
    EXPECT_EQ(Count(page, "<tbody class=\"block\"><template>"), 3u);
    EXPECT_EQ(Count(page, "</template></tbody>"), 3u);
}

TEST(FolderPages, AnEmptyListSaysWhy)
{
    EXPECT_TRUE(Contains(ListOf(QStringLiteral("/f"), 0), "This folder has no pictures."));
    CViewFolderImageIterator::Collection collection;
    collection.push_back(std::make_unique<CFilePictureInfo>(QStringLiteral("/f/a.jpg"), 0));
    CViewFolderImageIterator iterator(collection);
    iterator.SetCollection();
    iterator.HidePicture(0);
    const std::string page = BuildListPage({.folder = QStringLiteral("/f"), .card = QSize(40, 30)}, iterator);
    EXPECT_TRUE(Contains(page, "( 1 picture )"));
    EXPECT_TRUE(Contains(page, "All pictures of this folder are in the gallery."));
    EXPECT_FALSE(Contains(page, "<tr id="));
}

TEST(FolderPages, TheProgressPageHoldsTheCount)
{
    EXPECT_TRUE(Contains(BuildLoadingPage(), "Loading..."));
    EXPECT_TRUE(Contains(BuildProgressPage(35), "Loading... <span id=\"count\">35</span>"));
    EXPECT_EQ(SetCountScript(40), QStringLiteral("folderList.setCount(40)"));
    EXPECT_EQ(
        AppendCardsScript({{0, QString(), QStringLiteral("/c/a \"b\"\n'%.jpg")}}),
        QStringLiteral("folderList.append([\"<tr><td colspan=2><img src=\\\"/c/a %22b%22%0A%27%25.jpg\\\" "
                       "alt=\\\"\\\"></td></tr>\"])"));
}

// Hundreds may come at a time when their cards were made before.
TEST(FolderPages, ManyCardsAreAppendedInBlocks)
{
    const std::vector<FolderCard> cards(45, FolderCard{0, QString(), QStringLiteral("/c.jpg")});
    EXPECT_EQ(AppendCardsScript(cards).count(QStringLiteral("\",\"")), 2);
}

TEST(FolderPages, TextsAreNoMarkup)
{
    const std::string page =
        BuildTextPage(QStringLiteral("<x>"), {QStringLiteral("a & b"), QStringLiteral("<i>")});
    EXPECT_TRUE(Contains(page, "&lt;x&gt;"));
    EXPECT_TRUE(Contains(page, "a &amp; b"));
    EXPECT_TRUE(Contains(page, "&lt;i&gt;"));
}

TEST(FolderPages, RowsAreHiddenById)
{
    EXPECT_EQ(HideRowsScript({3, 12}), QStringLiteral("folderList.hide([\"i3\",\"i12\"])"));
}
