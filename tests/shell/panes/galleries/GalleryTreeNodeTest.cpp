#include "shell/panes/galleries/GalleryTreeNode.h"

#include <gtest/gtest.h>

#include "support/ProjectFixture.h"

namespace {

class GalleryTreeNode : public testing::Test {
protected:
    GalleryTreeNode()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "");
        fixture.WriteStyle(QStringLiteral("plain"));
        fixture.NewProject();
    }

    CGalleryProject& Project() { return fixture.GetProject(); }

    // "0(1(3 4) 2)"
    static QString Written(const CGalleryTreeNode* node)
    {
        QString text = QString::number(node->galleryId);
        QStringList children;
        const CGalleryTreeNode* previous = nullptr;
        for (const CGalleryTreeNode* child = node->firstChild; child; child = child->next) {
            EXPECT_EQ(child->parent, node);
            EXPECT_EQ(child->previous, previous);
            previous = child;
            children += Written(child);
        }
        return children.isEmpty() ? text : text + '(' + children.join(QLatin1Char(' ')) + ')';
    }

    QString Tree() { return Written(CGalleryTree(Project()).GetRoot()); }

    CProjectFixture fixture;
};

} // namespace

TEST_F(GalleryTreeNode, HasTheProjectsShape)
{
    EXPECT_EQ(Tree(), QStringLiteral("0"));
    for (const int parent : {0, 0, 1, 1, 2, 0}) {
        Project().AddChildGallery(parent);
    }
    EXPECT_EQ(Tree(), QStringLiteral("0(1(3 4) 2(5) 6)"));
    Project().AddParentGallery(2);
    EXPECT_EQ(Tree(), QStringLiteral("0(1(3 4) 6 7(2(5)))"));
    Project().RemoveGallery(1);
    EXPECT_EQ(Tree(), QStringLiteral("0(6 7(2(5)) 3 4)"));
    Project().AddParentGallery(0);
    EXPECT_EQ(Tree(), QStringLiteral("8(0(6 7(2(5)) 3 4))"));
}

TEST_F(GalleryTreeNode, SiblingsStandAsTheirParentListsThem)
{
    for (const int parent : {0, 0, 0, 2}) {
        Project().AddChildGallery(parent);
    }
    Project().FindGallery(0)->AddPicture(fixture.WritePicture(QStringLiteral("a.png")));
    Project().MoveGallery(3, 0, 0);
    EXPECT_EQ(Tree(), QStringLiteral("0(3 1 2(4))"));
    Project().MoveGallery(4, 0, 2);
    EXPECT_EQ(Tree(), QStringLiteral("0(3 1 4 2)"));
    Project().FindGallery(0)->ReorderPictures({4, 3, 2, 1, 0});
    EXPECT_EQ(Tree(), QStringLiteral("0(2 4 1 3)"));
}

TEST_F(GalleryTreeNode, HasTheNamesOfTheGalleries)
{
    Project().AddChildGallery(0);
    Project().FindGallery(1)->SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("display_name"),
                                                CVariant(QStringLiteral("By the \"Sea\" <1>")));
    const CGalleryTree tree(Project());
    EXPECT_EQ(tree.Find(1)->name, QStringLiteral("By the \"Sea\" <1>"));
    EXPECT_EQ(tree.Find(0)->name, Project().GetRootGallery()->GetDisplayName());
}

TEST_F(GalleryTreeNode, ATitleComesFirst)
{
    const struct {
        CVariant title;
        const char* name;
    } rows[] = {
        {CVariant(QStringLiteral("Sea & Sand")), "Sea & Sand"},
        {CVariant(QStringLiteral("")), "trip"},
        {CVariant(QStringLiteral("  ")), "trip"},
        {CVariant(int32_t{7}), "trip"},
        {CVariant(), "trip"},
    };
    CGallery& child = *Project().FindGallery(Project().AddChildGallery(0));
    child.SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("name"),
                            CVariant(QStringLiteral("trip")));
    for (const auto& row : rows) {
        child.SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("title"), row.title);
        EXPECT_EQ(CGalleryTree(Project()).Find(1)->name, QString::fromLatin1(row.name));
    }
}

TEST_F(GalleryTreeNode, IsFoundByItsGallery)
{
    Project().AddChildGallery(0);
    const CGalleryTree tree(Project());
    EXPECT_EQ(tree.Find(1), tree.GetRoot()->firstChild);
    EXPECT_EQ(tree.Find(2), nullptr);
    EXPECT_EQ(tree.Find(-1), nullptr);
}

TEST_F(GalleryTreeNode, OfAProjectWithoutGalleriesThereIsNone)
{
    Project().Clear();
    const CGalleryTree tree(Project());
    EXPECT_EQ(tree.GetRoot(), nullptr);
    EXPECT_EQ(tree.Find(0), nullptr);
}

// A file that was made by hand can list a gallery twice, and one that nobody lists.
TEST_F(GalleryTreeNode, StandsOnceHoweverManyListIt)
{
    for (const int parent : {0, 0, 1}) {
        Project().AddChildGallery(parent);
    }
    Project().FindGallery(2)->AddChild(3);
    EXPECT_EQ(Tree(), QStringLiteral("0(1(3) 2)"));
    Project().AddGallery();
    EXPECT_EQ(Tree(), QStringLiteral("0(1(3) 2)"));
    EXPECT_EQ(CGalleryTree(Project()).Find(4), nullptr);
}

TEST_F(GalleryTreeNode, MayStandInALineOfThousands)
{
    constexpr int count = 5000;
    for (int i = 0; i < count; ++i) {
        Project().AddGallery();
    }
    // From the end, so that no cover has others above it yet.
    for (int i = count - 1; i >= 0; --i) {
        Project().FindGallery(i)->AddChild(i + 1);
    }
    const CGalleryTree tree(Project());
    const CGalleryTreeNode* node = tree.Find(count);
    int depth = 0;
    for (; node->parent; node = node->parent) {
        ++depth;
    }
    EXPECT_EQ(depth, count);
}
