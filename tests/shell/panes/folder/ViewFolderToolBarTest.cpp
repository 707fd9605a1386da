#include "shell/panes/folder/ViewFolderToolBar.h"

#include <QMenu>
#include <QToolButton>
#include <gtest/gtest.h>

#include "resources/StringTable.h"

namespace {

class FolderToolBar : public testing::Test {
protected:
    QStringList chosen;
    int browsed = 0;
    CViewFolderToolBar toolBar{{.browse = [this] { ++browsed; },
                                .chooseFolder =
                                    [this](const QString& folder) {
                                        chosen += folder;
                                    }}};

    // "name=path", with a "*" before the one that has the check mark.
    QStringList Entries()
    {
        QStringList entries;
        for (const QAction* action : toolBar.GetFoldersMenu().actions()) {
            entries += (action->isChecked() ? QStringLiteral("*") : QString()) + action->text() +
                       QLatin1Char('=') + action->data().toString();
        }
        return entries;
    }
    static std::vector<QString> Folders(const QStringList& folders)
    {
        return std::vector<QString>(folders.begin(), folders.end());
    }
};

} // namespace

TEST_F(FolderToolBar, ListsTheRecentFoldersByTheirLastNames)
{
    toolBar.UpdateFoldersMenu(Folders({QStringLiteral("/p/sea"), QStringLiteral("/p/Sea"),
                                       QStringLiteral("/p/R&B/"), QStringLiteral("/")}),
                              QStringLiteral("/p/Sea"));
    EXPECT_EQ(Entries(), (QStringList{QStringLiteral("sea=/p/sea"), QStringLiteral("*Sea=/p/Sea"),
                                      QStringLiteral("R&&B=/p/R&B/"), QStringLiteral("/=/")}));
}

TEST_F(FolderToolBar, EntriesThatStayKeepTheirPlacesAndNewOnesAreAppended)
{
    toolBar.UpdateFoldersMenu(Folders({QStringLiteral("/a"), QStringLiteral("/b"), QStringLiteral("/c")}),
                              QStringLiteral("/a"));
    QAction* const kept = toolBar.GetFoldersMenu().actions().at(2);
    toolBar.UpdateFoldersMenu(Folders({QStringLiteral("/d"), QStringLiteral("/c"), QStringLiteral("/a")}),
                              QStringLiteral("/d"));
    EXPECT_EQ(Entries(),
              (QStringList{QStringLiteral("a=/a"), QStringLiteral("c=/c"), QStringLiteral("*d=/d")}));
    EXPECT_EQ(toolBar.GetFoldersMenu().actions().at(1), kept);
    toolBar.UpdateFoldersMenu({}, QString());
    EXPECT_EQ(Entries(), QStringList());
    EXPECT_FALSE(toolBar.findChild<QToolButton*>(QStringLiteral("FoldersButton"))->isEnabled());
}

TEST_F(FolderToolBar, AnEntryChoosesItsFolderAndTheButtonBrowses)
{
    toolBar.UpdateFoldersMenu(Folders({QStringLiteral("/a"), QStringLiteral("/b")}), QStringLiteral("/a"));
    toolBar.GetFoldersMenu().actions().at(1)->trigger();
    EXPECT_EQ(chosen, QStringList{QStringLiteral("/b")});
    toolBar.findChild<QAction*>(QStringLiteral("BrowseFolder"))->trigger();
    EXPECT_EQ(browsed, 1);
}

TEST_F(FolderToolBar, ItsTipsSayWhatItsButtonsDo)
{
    EXPECT_EQ(toolBar.findChild<QToolButton*>(QStringLiteral("FoldersButton"))->toolTip(),
              QStringLiteral("Choose pictures folder from the list"));
    EXPECT_EQ(toolBar.findChild<QAction*>(QStringLiteral("BrowseFolder"))->toolTip(),
              QStringLiteral("Locate folder with pictures"));
    toolBar.SetTitle(QStringLiteral("Sea"));
    EXPECT_EQ(toolBar.GetTitle(), QStringLiteral("Sea"));
}
