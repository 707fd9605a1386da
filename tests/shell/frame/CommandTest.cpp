#include <set>

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <gtest/gtest.h>

#include "shell/frame/CommandLine.h"
#include "shell/frame/Commands.h"
#include "shell/frame/FrameMenus.h"
#include "shell/look/Icons.h"

namespace {

struct FrameWithMenus {
    QMainWindow window;
    QMenu layouts;
    QMenu styles;
    std::vector<int> commands;
    CCommandActions actions{window, [this](int commandId) {
                                commands.push_back(commandId);
                            }};
    FrameMenus menus{*window.menuBar(), actions, layouts, styles};
};

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

} // namespace

// The numbers, texts and keys are settled: people and scripts know the commands by them.
TEST(Commands, TheMenusAreThoseThatAreSettled)
{
    FrameWithMenus frame;
    QStringList found;
    for (const QAction* action : frame.window.menuBar()->actions()) {
        found += action->text() + QStringLiteral(": ") + Describe(*action->menu());
    }
    EXPECT_EQ(found,
              (QStringList{
                  QStringLiteral("&File: &New 57600|&Open... 57601|&Save 57603|Save &As... 57604|-|E&xit "
                                 "57665"),
                  QStringLiteral("&Gallery: &Deploy... 32780|&Layout 32786|&Style 32788"),
                  QStringLiteral("&Effects: &Image watermark... 32792|&Image signature... 32794|&Ads... "
                                 "32797"),
                  QStringLiteral("&Source: &Open folder... 32789"),
                  QStringLiteral("&Help: &About Vistorama... 57664"),
              }));
}

TEST(Commands, TheKeysAreThoseThatAreSettled)
{
    const struct {
        CommandId id;
        const char* keys;
    } rows[] = {
        {CommandId::New, "Ctrl+N"},   {CommandId::Open, "Ctrl+O"},
        {CommandId::Save, "Ctrl+S"},  {CommandId::SaveAs, ""},
        {CommandId::Print, "Ctrl+P"}, {CommandId::Undo, "Ctrl+Z; Alt+Backspace"},
        {CommandId::Copy, "Ctrl+C"},  {CommandId::Cut, "Ctrl+X; Shift+Del"},
        {CommandId::Clear, "Del"},    {CommandId::Paste, "Ctrl+V; Shift+Ins"},
        {CommandId::NextPane, "F6"},  {CommandId::PreviousPane, "Shift+F6"},
        {CommandId::Exit, ""},        {CommandId::Deploy, ""},
    };
    FrameWithMenus frame;
    for (const auto& row : rows) {
        EXPECT_EQ(QKeySequence::listToString(frame.actions.Get(row.id)->shortcuts()),
                  QLatin1String(row.keys));
    }
}

TEST(Commands, EveryActionHasIconTipAndStatusTip)
{
    FrameWithMenus frame;
    std::set<int> ids;
    for (const CommandRow& row : GetCommandTable()) {
        const QAction& action = *frame.actions.Get(row.id);
        EXPECT_FALSE(action.icon().isNull()) << row.name;
        EXPECT_FALSE(action.toolTip().isEmpty()) << row.name;
        EXPECT_FALSE(action.toolTip().contains(QLatin1Char('&'))) << row.name;
        EXPECT_GT(action.statusTip().size(), 10) << row.name;
        EXPECT_TRUE(ids.insert(static_cast<int>(row.id)).second) << row.name;
    }
    EXPECT_EQ(frame.actions.Get(CommandId::New)->toolTip(), QStringLiteral("New (Ctrl+N)"));
}

TEST(Commands, AnActionGivesItsNumber)
{
    FrameWithMenus frame;
    for (const CommandRow& row : GetCommandTable()) {
        if (frame.actions.Get(row.id)->menu() != nullptr) {
            continue;
        }
        frame.commands.clear();
        frame.actions.Get(row.id)->trigger();
        EXPECT_EQ(frame.commands, std::vector<int>{static_cast<int>(row.id)}) << row.name;
    }
}

// Two keys for two commands would make both dead.
TEST(Commands, NoKeyIsGivenTwice)
{
    std::set<QString> keys;
    for (const CommandRow& row : GetCommandTable()) {
        for (const QKeySequence& key : KeysOf(row)) {
            EXPECT_TRUE(keys.insert(key.toString()).second) << qPrintable(key.toString());
        }
    }
}

TEST(CommandLine, ThePathStandsInQuotesOrIsTheWholeText)
{
    const struct {
        const char* commandLine;
        const char* path;
    } rows[] = {
        {"", ""},
        {"/a/b.gallery", "/a/b.gallery"},
        {"/a/b c.gallery", "/a/b c.gallery"},
        {R"("/a/b c.gallery")", "/a/b c.gallery"},
        {R"("/a/b c.gallery" and more)", "/a/b c.gallery"},
        {R"("/a/b c.gallery)", "/a/b c.gallery"},
        {R"(/a/"b".gallery)", R"(/a/"b".gallery)"},
        {R"("")", ""},
        {R"(")", ""},
        {"--help", "--help"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ParseCommandLinePath(QString::fromUtf8(row.commandLine)), QString::fromUtf8(row.path))
            << row.commandLine;
    }
}
