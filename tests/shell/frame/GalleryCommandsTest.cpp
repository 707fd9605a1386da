#include "shell/frame/GalleryCommands.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTreeView>

#include "editing/EditHistory.h"
#include "shell_support/DialogTools.h"
#include "support/ProjectFixture.h"

namespace {

// The root has a.png, b.png and c.png, and the galleries "Norway" and, below it, "Oslo" with one picture.
class GalleryDialogs : public testing::Test {
protected:
    void SetUp() override
    {
        project = &fixture.NewProject();
        norway = project->AddChildGallery(0);
        oslo = project->AddChildGallery(norway);
        for (const char* name : {"a.png", "b.png", "c.png"}) {
            fixture.GetRoot().AppendPicture(fixture.WritePicture(QString::fromLatin1(name)), 0);
        }
        project->FindGallery(oslo)->AppendPicture(fixture.WritePicture(QStringLiteral("o.png")), 0);
        SetTitle(norway, "Norway");
        SetTitle(oslo, "Oslo");
    }

    void SetTitle(int32_t gallery, const char* title)
    {
        project->FindGallery(gallery)->SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("title"),
                                                         CVariant(QString::fromLatin1(title)));
    }
    CPictureInfo& Picture(int32_t gallery, int32_t position)
    {
        return *project->FindGallery(gallery)->GetPictures().GetAt(position);
    }
    // Of a file or of the entry of a gallery in the root.
    int32_t PositionOf(const char* name)
    {
        const CPictureList& pictures = fixture.GetRoot().GetPictures();
        for (int32_t i = 0; i < pictures.GetCount(); ++i) {
            if (pictures.GetAt(i)->GetKey().endsWith(QString::fromLatin1(name))) {
                return i;
            }
        }
        return fixture.GetRoot().FindChildPlace(norway)->position;
    }
    QString TextOf(int32_t position, const char* variable)
    {
        const auto value = Picture(0, position).GetVariable(QString::fromLatin1(variable));
        return value ? value->GetString() : QStringLiteral("none");
    }
    std::optional<Act> Ask(const std::vector<int32_t>& positions)
    {
        return AskForPictureTexts(*project, fixture.GetRoot(), positions, nullptr);
    }

    CProjectFixture fixture;
    CGalleryProject* project = nullptr;
    int32_t norway = 0;
    int32_t oslo = 0;
};

// "title|description|file name" of each row.
QStringList RowsOf(const QTableView& table)
{
    QStringList rows;
    for (int row = 0; row < table.model()->rowCount(); ++row) {
        QStringList cells;
        for (const int column : {1, 2, 3}) {
            cells += table.model()->index(row, column).data().toString();
        }
        rows += cells.join(QLatin1Char('|'));
    }
    return rows;
}

void Write(const QTableView& table, int row, int column, const char* text)
{
    table.model()->setData(table.model()->index(row, column), QString::fromLatin1(text), Qt::EditRole);
}

} // namespace

TEST_F(GalleryDialogs, TextsOfAllPicturesAndChildrenAreOneAct)
{
    Picture(0, PositionOf("a.png")).SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("A")));
    Picture(0, PositionOf("b.png")).SetVariable(QStringLiteral("title"), CVariant(2019));
    const int32_t child = PositionOf("Norway");
    const CModalAnswer answer([&](QWidget& dialog) {
        const auto& table = Find<QTableView>(dialog, "pictures");
        const QStringList rows = RowsOf(table);
        ASSERT_EQ(rows.size(), 4);
        EXPECT_EQ(rows[PositionOf("a.png")], QStringLiteral("A||a.png"));
        EXPECT_EQ(rows[PositionOf("b.png")], QStringLiteral("2019||b.png"));
        EXPECT_EQ(rows[child], QStringLiteral("Norway||"));
        Write(table, PositionOf("a.png"), 1, "");
        Write(table, PositionOf("c.png"), 2, "one\ntwo");
        Write(table, child, 1, "Norge");
        Click(dialog, "ok");
    });
    const std::optional<Act> act = Ask({});
    ASSERT_TRUE(act);
    EXPECT_EQ(act->name, QStringLiteral("Edit Titles and Descriptions"));
    CEditHistory history(*project, [](const Edited&) {});
    EXPECT_TRUE(history.Do(*act));
    EXPECT_EQ(TextOf(PositionOf("a.png"), "title"), QString());
    EXPECT_EQ(TextOf(PositionOf("c.png"), "description"), QStringLiteral("one</br>two"));
    EXPECT_EQ(TextOf(child, "title"), QStringLiteral("Norge"));
    history.GetStack().undo();
    EXPECT_EQ(TextOf(PositionOf("a.png"), "title"), QStringLiteral("A"));
    EXPECT_EQ(TextOf(PositionOf("c.png"), "description"), QStringLiteral("none"));
    EXPECT_EQ(TextOf(child, "title"), QStringLiteral("Norway"));
}

TEST_F(GalleryDialogs, TextsOfSomePicturesGoToThose)
{
    const int32_t b = PositionOf("b.png");
    const CModalAnswer answer([&](QWidget& dialog) {
        const auto& table = Find<QTableView>(dialog, "pictures");
        EXPECT_EQ(RowsOf(table), QStringList(QStringLiteral("||b.png")));
        Write(table, 0, 1, "B");
        Click(dialog, "ok");
    });
    const std::optional<Act> act = Ask({b, 99});
    ASSERT_TRUE(act);
    act->apply(*project);
    EXPECT_EQ(TextOf(b, "title"), QStringLiteral("B"));
    EXPECT_EQ(TextOf(PositionOf("a.png"), "title"), QStringLiteral("none"));
}

TEST_F(GalleryDialogs, UnchangedTextsAreNoAct)
{
    for (const char* button : {"ok", "cancel"}) {
        const CModalAnswer answer([&](QWidget& dialog) { Click(dialog, button); });
        EXPECT_FALSE(Ask({}));
        EXPECT_TRUE(answer.WasAsked());
    }
    const CModalAnswer answer([&](QWidget& dialog) {
        Write(Find<QTableView>(dialog, "pictures"), 0, 1, "x");
        const CMessageAnswer discard(QStringLiteral("Discard"));
        Click(dialog, "cancel");
    });
    EXPECT_FALSE(Ask({}));
    const int32_t empty = project->AddChildGallery(0);
    EXPECT_FALSE(AskForPictureTexts(*project, *project->FindGallery(empty), {}, nullptr));
}

TEST_F(GalleryDialogs, AGalleryIsChosenFromTheTree)
{
    const CModalAnswer answer([&](QWidget& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Titles and descriptions"));
        const auto& tree = Find<QTreeView>(dialog, "galleries");
        const QModelIndex root = tree.model()->index(0, 0);
        const QModelIndex first = tree.model()->index(0, 0, root);
        const QModelIndex second = tree.model()->index(0, 0, first);
        EXPECT_EQ(root.data().toString(), fixture.GetRoot().GetDisplayName());
        EXPECT_EQ(root.siblingAtColumn(1).data().toString(), QStringLiteral("3"));
        EXPECT_FALSE(root.flags() & Qt::ItemIsEnabled);
        EXPECT_EQ(first.data().toString(), QStringLiteral("Norway"));
        EXPECT_EQ(first.siblingAtColumn(1).data().toString(), QStringLiteral("0"));
        EXPECT_EQ(second.data().toString(), QStringLiteral("Oslo"));
        QTest::keyClicks(&Find<QLineEdit>(dialog, "filter"), QStringLiteral("oslo"));
        EXPECT_EQ(Find<QPushButton>(dialog, "ok").text(), QStringLiteral("Choose"));
        Click(dialog, "ok");
    });
    EXPECT_EQ(AskForGallery(*project, 0, StringId::PictureTextsCommand, nullptr), oslo);
}

TEST_F(GalleryDialogs, NoGalleryIsAnAnswer)
{
    const CModalAnswer answer([&](QWidget& dialog) { Click(dialog, "cancel"); });
    EXPECT_EQ(AskForGallery(*project, 0, StringId::PictureTextsCommand, nullptr), std::nullopt);
}

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
