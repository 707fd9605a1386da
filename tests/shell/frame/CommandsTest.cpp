#include "shell/frame/Commands.h"

#include <set>

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <gtest/gtest.h>

namespace {

struct WindowWithActions {
    QMainWindow window;
    std::vector<int> commands;
    CCommandActions actions{window, [this](int commandId) {
                                commands.push_back(commandId);
                            }};
};

} // namespace

TEST(Commands, TheKeysAreThoseOfTheGuide)
{
    const struct {
        CommandId id;
        const char* keys;
    } rows[] = {
        {CommandId::New, "Ctrl+N"},
        {CommandId::Open, "Ctrl+O"},
        {CommandId::Save, "Ctrl+S"},
        {CommandId::SaveAs, ""},
        {CommandId::Print, "Ctrl+P"},
        {CommandId::Undo, "Ctrl+Z; Alt+Backspace"},
        {CommandId::Copy, "Ctrl+C"},
        {CommandId::Cut, "Ctrl+X; Shift+Del"},
        {CommandId::Clear, "Del"},
        {CommandId::Paste, "Ctrl+V; Shift+Ins"},
        {CommandId::NextPane, "F6"},
        {CommandId::PreviousPane, "Shift+F6"},
        {CommandId::Exit, ""},
        {CommandId::Deploy, ""},
        {CommandId::RenameGallery, "F2"},
    };
    WindowWithActions frame;
    for (const auto& row : rows) {
        EXPECT_EQ(QKeySequence::listToString(frame.actions.Get(row.id)->shortcuts()),
                  QLatin1String(row.keys));
    }
}

TEST(Commands, EveryActionHasIconTipAndStatusTip)
{
    WindowWithActions frame;
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
    WindowWithActions frame;
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
