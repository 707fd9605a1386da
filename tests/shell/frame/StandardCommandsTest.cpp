#include "shell/frame/StandardCommands.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <gtest/gtest.h>

TEST(StandardCommands, ATextFieldCopiesCutsPastesAndUndoes)
{
    QLineEdit field(QStringLiteral("one two"));
    field.setSelection(0, 4);
    PerformStandardCommand(CommandId::Copy, &field);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("one "));
    PerformStandardCommand(CommandId::Cut, &field);
    EXPECT_EQ(field.text(), QStringLiteral("two"));
    field.end(false);
    PerformStandardCommand(CommandId::Paste, &field);
    EXPECT_EQ(field.text(), QStringLiteral("twoone "));
    PerformStandardCommand(CommandId::Undo, &field);
    EXPECT_EQ(field.text(), QStringLiteral("two"));
}

TEST(StandardCommands, ALongTextDoesTheSame)
{
    QPlainTextEdit field(QStringLiteral("one"));
    field.selectAll();
    PerformStandardCommand(CommandId::Cut, &field);
    EXPECT_EQ(field.toPlainText(), QString());
    PerformStandardCommand(CommandId::Undo, &field);
    EXPECT_EQ(field.toPlainText(), QStringLiteral("one"));
}

TEST(StandardCommands, AWidgetThatOffersNothingIsLeftAlone)
{
    QLabel label(QStringLiteral("text"));
    for (const CommandId id : {CommandId::Undo, CommandId::Cut, CommandId::Copy, CommandId::Paste,
                               CommandId::Clear, CommandId::Print}) {
        PerformStandardCommand(id, &label);
        PerformStandardCommand(id, nullptr);
    }
    EXPECT_EQ(label.text(), QStringLiteral("text"));
}
