#include "shell/frame/FrameMenus.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <gtest/gtest.h>

#include "common/Settings.h"
#include "shell/frame/Commands.h"
#include "shell/frame/RecentProjects.h"
#include "support/ScratchFolder.h"

namespace {

// "New 57600|..."
QString Describe(const QMenu& menu)
{
    QStringList items;
    for (const QAction* action : menu.actions()) {
        items += action->isSeparator() ? QStringLiteral("-")
                                       : action->text() + QLatin1Char(' ') + action->data().toString();
    }
    return items.join(QLatin1Char('|'));
}

QString Entry(const QMenu& menu, int position)
{
    const QAction* const action = menu.actions().at(position);
    return action->isSeparator() ? QStringLiteral("-") : action->text();
}

QStringList EntriesOf(const QMenu& menu)
{
    QStringList entries;
    for (int position = 0; position < menu.actions().size(); ++position) {
        entries += Entry(menu, position);
    }
    return entries;
}

void AddLastingItems(QMenu& menu)
{
    for (const char* name : {"New", "Open", "Save", "Save As", "Earlier"}) {
        menu.addAction(QString::fromLatin1(name));
    }
    menu.addSeparator();
    menu.addAction(QStringLiteral("Exit"));
}

class RecentProjectsMenu : public testing::Test {
protected:
    const CScratchFolder scratch;
    const std::unique_ptr<CSettingsStore> settings =
        CreateIniSettings(scratch.Path(QStringLiteral("user")), scratch.Path(QStringLiteral("machine")));

    CRecentProjects List(const QStringList& paths)
    {
        CRecentProjects projects(*settings);
        for (auto path = paths.crbegin(); path != paths.crend(); ++path) {
            projects.Add(*path);
        }
        return projects;
    }
};

} // namespace

// People know the commands by their texts, pages and update hints by their numbers.
TEST(FrameMenus, HoldTheCommandsInTheirOrder)
{
    QMainWindow window;
    QMenu layouts;
    QMenu styles;
    const CCommandActions actions(window, [](int) {});
    QAction visibility(Text(StringId::VisibilityCommand));
    const FrameMenus frameMenus(*window.menuBar(), actions, {layouts, styles, visibility});
    EXPECT_EQ(frameMenus.file, window.menuBar()->actions().at(0)->menu());
    QStringList found;
    for (const QAction* action : window.menuBar()->actions()) {
        found += action->text() + QStringLiteral(": ") + Describe(*action->menu());
    }
    EXPECT_EQ(
        found,
        (QStringList{
            QStringLiteral("&File: &New 57600|&Open... 57601|&Save 57603|Save &As... 57604|Open "
                           "&earlier version... 32800|-|E&xit "
                           "57665"),
            QStringLiteral("&Edit: &Undo 57643|&Redo 57644|-|Cu&t 57635|&Copy 57634|&Paste 57637|&Delete "
                           "57632|-|Select &all 57642"),
            QStringLiteral("&Gallery: &Deploy... 32780|&Layout 32786|&Style 32788|&Visibility... |&Pictures "
                           "|S&ort pictures "
                           "|&Titles and descriptions... 32807|-|&Rename gallery 32810|D&uplicate gallery "
                           "32811|D&elete gallery 32812"),
            QStringLiteral("Effec&ts: &Image watermark... 32792|&Image signature... 32794|&Ads... "
                           "32797"),
            QStringLiteral("&Source: &Open folder... 32789|Find &missing pictures... 32801|Empty picture "
                           "&cache... 32802"),
            QStringLiteral("&Help: &About Vistorama... 57664"),
        }));
}

TEST_F(RecentProjectsMenu, ListsTheOthersByName)
{
    const CRecentProjects projects =
        List({QStringLiteral("/m.gallery"), QStringLiteral("/z/Alps.gallery"),
              QStringLiteral("/you & me.gallery"), QStringLiteral("/a/beach.gallery")});
    QMenu menu;
    AddLastingItems(menu);
    UpdateRecentProjectsMenu(menu, projects, [](int) {});
    EXPECT_EQ(EntriesOf(menu).join(QLatin1Char('|')),
              QStringLiteral("New|Open|Save|Save As|Earlier|-|Alps|beach|you && me|-|Exit"));
    // 32999 plus the place in the list, counted from 1.
    EXPECT_EQ(menu.actions().at(6)->data().toInt(), 33001);
    EXPECT_EQ(menu.actions().at(7)->data().toInt(), 33003);
    EXPECT_EQ(menu.actions().at(8)->data().toInt(), 33002);
    EXPECT_EQ(menu.actions().at(6)->statusTip(), QStringLiteral("/z/Alps.gallery"));
}

TEST_F(RecentProjectsMenu, StaysAsItIsForOneProject)
{
    QMenu menu;
    AddLastingItems(menu);
    const QStringList lasting = EntriesOf(menu);
    UpdateRecentProjectsMenu(menu, List({QStringLiteral("/a.gallery"), QStringLiteral("/b.gallery")}),
                             [](int) {});
    EXPECT_EQ(menu.actions().size(), 9);
    UpdateRecentProjectsMenu(menu, List({QStringLiteral("/a.gallery")}), [](int) {});
    EXPECT_EQ(EntriesOf(menu), lasting);
}

// The menu changes while one of its entries is at work.
TEST_F(RecentProjectsMenu, AnEntryGivesItsNumberOnceTheMenuIsThrough)
{
    const CRecentProjects projects = List({QStringLiteral("/a.gallery"), QStringLiteral("/b.gallery")});
    QMenu menu;
    AddLastingItems(menu);
    int chosen = 0;
    UpdateRecentProjectsMenu(menu, projects, [&](int commandId) { chosen = commandId; });
    menu.actions().at(6)->trigger();
    EXPECT_EQ(chosen, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return chosen == 33001; }));
}
