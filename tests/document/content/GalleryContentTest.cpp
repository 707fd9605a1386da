#include "document/content/GalleryContent.h"

#include "TestProject.h"

// The content of a gallery by itself: there is no project, and no other gallery.

namespace {

struct LoneGallery {
    CScratchFolder scratch;
    CGalleryCatalogue catalogue{scratch.Path()};
    CGalleryContent content{catalogue, 3};
};

} // namespace

TEST(GalleryContent, KeepsTextsByObjectAndPage)
{
    LoneGallery lone;
    CGalleryContent& content = lone.content;
    const QString name = QStringLiteral("Title");
    content.SetObjectVariable(QStringLiteral("Gallery"), name, CVariant(1));
    content.SetObjectVariable(QStringLiteral("content"), name, CVariant(2));
    content.SetObjectVariable(QStringLiteral("page"), name, CVariant(3));
    content.SetPageVariable(QStringLiteral("p"), 4, name, CVariant(5));
    const CVariableMap::Entries own = {{QStringLiteral("title"), CVariant(1)}};
    EXPECT_EQ(content.GetTexts().own.GetEntries(), own);
    EXPECT_EQ(content.GetPictures().GetVariable(name), CVariant(2));
    ASSERT_EQ(content.GetTexts().pages.size(), 1u);
    const auto& [page, variables] = *content.GetTexts().pages.begin();
    EXPECT_EQ(page, GalleryTexts::PageKey(QStringLiteral("p"), 4));
    EXPECT_EQ(variables.GetEntries(), (CVariableMap::Entries{{QStringLiteral("title"), CVariant(5)}}));
}

TEST(GalleryContent, HasANameOfItsOwnOnceOneIsSet)
{
    LoneGallery lone;
    EXPECT_EQ(lone.content.FindOwnName(), std::nullopt);
    lone.content.SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("name"),
                                   CVariant(QStringLiteral("n")));
    EXPECT_EQ(lone.content.FindOwnName(), QStringLiteral("n"));
}

TEST(PageVisibility, KeepsItsElementsPageByPage)
{
    CPageVisibility visibility;
    const QString page = QStringLiteral("p.html");
    EXPECT_TRUE(visibility.Note(page, QStringLiteral("a")));
    visibility.SetElement(page, QStringLiteral("b"), false);
    EXPECT_FALSE(visibility.Note(page, QStringLiteral("b")));
    EXPECT_TRUE(visibility.Note(QStringLiteral("q.html"), QStringLiteral("b")));
    EXPECT_EQ(visibility.GetSeenElements(),
              (CPageVisibility::Elements{{QStringLiteral("a"), true}, {QStringLiteral("b"), true}}));
    visibility.ClearSeenElements();
    EXPECT_TRUE(visibility.GetSeenElements().empty());
    EXPECT_EQ(visibility.GetPages().size(), 2u);
}
