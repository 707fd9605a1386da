#include "shell/dialogs/DlgChooseGallery.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

#include "shell_support/DialogTools.h"

namespace {

std::vector<ListedGallery> ThreeGalleries()
{
    return {{0, -1, QStringLiteral("Travels"), 12},
            {3, 0, QStringLiteral("Norway"), 40},
            {5, 3, QStringLiteral("Fjords"), 7}};
}

// One below the other.
std::vector<ListedGallery> Chain(int count)
{
    std::vector<ListedGallery> galleries;
    for (int i = 0; i < count; ++i) {
        galleries.push_back({i, i - 1, QStringLiteral("Level %1").arg(i), i});
    }
    return galleries;
}

} // namespace

class DlgChooseGallery : public testing::Test {
protected:
    void Open(const std::vector<ListedGallery>& galleries, int32_t current)
    {
        dialog = std::make_unique<CDlgChooseGallery>(
            galleries,
            CDlgChooseGallery::Options{QStringLiteral("Move to gallery"), QStringLiteral("Move"), current},
            nullptr);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
        tree = &Find<QTreeView>(*dialog, "galleries");
    }
    void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    void Type(const char* text)
    {
        QTest::keyClicks(&Find<QLineEdit>(*dialog, "filter"), QString::fromUtf8(text));
    }
    bool CanTake() const { return Find<QPushButton>(*dialog, "ok").isEnabled(); }

    // "Travels(Norway(Fjords))": what the tree shows.
    QString Shown(const QModelIndex& parent = {}) const
    {
        QStringList titles;
        for (int row = 0; row < tree->model()->rowCount(parent); ++row) {
            const QModelIndex child = tree->model()->index(row, 0, parent);
            const QString below = tree->isExpanded(child) ? Shown(child) : QString();
            titles += child.data().toString() +
                      (below.isEmpty() ? below : QLatin1Char('(') + below + QLatin1Char(')'));
        }
        return titles.join(QLatin1Char(' '));
    }
    QModelIndex FindTitle(const char* title) const
    {
        const QModelIndexList found =
            tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole, QString::fromLatin1(title), -1,
                                 Qt::MatchExactly | Qt::MatchRecursive);
        return found.isEmpty() ? QModelIndex() : found[0];
    }

    std::unique_ptr<CDlgChooseGallery> dialog;
    QTreeView* tree = nullptr;
};

TEST_F(DlgChooseGallery, ShowsTheTreeWithItsCounts)
{
    Open(ThreeGalleries(), 3);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Move to gallery"));
    EXPECT_EQ(Find<QPushButton>(*dialog, "ok").text(), QStringLiteral("Move"));
    EXPECT_EQ(Shown(), QStringLiteral("Travels(Norway(Fjords))"));
    EXPECT_EQ(FindTitle("Norway").siblingAtColumn(1).data().toString(), QStringLiteral("40"));
    EXPECT_FALSE(Find<QLabel>(*dialog, "message").isVisible());
}

TEST_F(DlgChooseGallery, TheCurrentGalleryIsShownAndPassedBy)
{
    Open(ThreeGalleries(), 3);
    EXPECT_FALSE(FindTitle("Norway").flags() & Qt::ItemIsEnabled);
    EXPECT_EQ(FindTitle("Norway").data(Qt::ToolTipRole).toString(),
              QStringLiteral("The pictures are in this gallery already."));
    EXPECT_EQ(dialog->GetChosen(), 0);
    Press(Qt::Key_Down); // from the filter to the tree
    Press(Qt::Key_Down);
    EXPECT_EQ(dialog->GetChosen(), 5);
    Press(Qt::Key_Return);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->GetChosen(), 5);
}

TEST_F(DlgChooseGallery, TheOnlyGalleryCannotBeChosen)
{
    Open({{0, -1, QStringLiteral("Travels"), 3}}, 0);
    EXPECT_EQ(dialog->GetChosen(), std::nullopt);
    EXPECT_FALSE(CanTake());
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, tree->visualRect(FindTitle("Travels")).center());
    Press(Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
    Press(Qt::Key_Escape);
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
}

TEST_F(DlgChooseGallery, TypingNarrowsAndEnterTakes)
{
    std::vector<ListedGallery> galleries = {{0, -1, QStringLiteral("Root"), 0}};
    for (int i = 1; i < 200; ++i) {
        galleries.push_back({i, i % 10 == 0 ? 0 : i - i % 10, QStringLiteral("Gallery %1 ü").arg(i), i});
    }
    Open(galleries, 0);
    Type("Y 157");
    EXPECT_EQ(Shown(), QStringLiteral("Root(Gallery 150 ü(Gallery 157 ü))"));
    EXPECT_EQ(dialog->GetChosen(), 157);
    Press(Qt::Key_Return);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->GetChosen(), 157);
}

TEST_F(DlgChooseGallery, NoMatchSaysSoAndTheWholeTreeComesBack)
{
    Open(ThreeGalleries(), 3);
    Type("norway");
    EXPECT_EQ(Shown(), QStringLiteral("Travels(Norway)"));
    EXPECT_FALSE(CanTake());
    Type("x");
    EXPECT_EQ(Shown(), QString());
    EXPECT_TRUE(Find<QLabel>(*dialog, "message").isVisible());
    EXPECT_FALSE(CanTake());
    Find<QLineEdit>(*dialog, "filter").clear();
    EXPECT_EQ(Shown(), QStringLiteral("Travels(Norway(Fjords))"));
    EXPECT_FALSE(Find<QLabel>(*dialog, "message").isVisible());
    EXPECT_TRUE(CanTake());
}

TEST_F(DlgChooseGallery, AClickAndADoubleClickChoose)
{
    Open(ThreeGalleries(), 0);
    const auto placeOf = [this](const char* title) {
        return tree->visualRect(FindTitle(title)).center();
    };
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, placeOf("Fjords"));
    EXPECT_EQ(dialog->GetChosen(), 5);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, placeOf("Travels"));
    EXPECT_EQ(dialog->GetChosen(), 5);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, placeOf("Norway"));
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, placeOf("Norway"));
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->GetChosen(), 3);
}

TEST_F(DlgChooseGallery, ADeepChainIsOpenToItsEnd)
{
    Open(Chain(60), 59);
    Type("level 58");
    EXPECT_EQ(dialog->GetChosen(), 58);
    EXPECT_TRUE(Shown().startsWith(QStringLiteral("Level 0(Level 1(Level 2(")));
}

TEST_F(DlgChooseGallery, EqualTitlesAreToldApartByTheirParents)
{
    Open({{0, -1, QStringLiteral("Root"), 0},
          {1, 0, QStringLiteral("Summer"), 0},
          {2, 0, QStringLiteral("Winter"), 0},
          {3, 1, QStringLiteral("Norway"), 0},
          {4, 2, QStringLiteral("Norway"), 0}},
         0);
    Type("norway");
    EXPECT_EQ(Shown(), QStringLiteral("Root(Summer(Norway) Winter(Norway))"));
    EXPECT_EQ(dialog->GetChosen(), 3);
    EXPECT_EQ(tree->currentIndex().data(Qt::ToolTipRole).toString(),
              QStringLiteral("Root \u203A Summer \u203A Norway"));
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    EXPECT_EQ(dialog->GetChosen(), 4);
    EXPECT_EQ(tree->currentIndex().data(Qt::ToolTipRole).toString(),
              QStringLiteral("Root \u203A Winter \u203A Norway"));
}

TEST_F(DlgChooseGallery, IsUsable)
{
    Open({{0, -1, QStringLiteral("Travels"), 0},
          {1, 0, QStringLiteral("Norway"), 48},
          {2, 1, QStringLiteral("Fjords"), 112},
          {3, 1, QStringLiteral("Oslo"), 7},
          {4, 0, QStringLiteral("Portugal"), 1204}},
         1);
    ExpectUsable(*dialog, QStringLiteral("choose-gallery"));
}
