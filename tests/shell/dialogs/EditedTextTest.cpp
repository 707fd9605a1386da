#include "shell/dialogs/EditedText.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>

#include "shell_support/DialogTools.h"

namespace {

void Paste(CLimitedTextEdit& edit, const QString& text)
{
    QApplication::clipboard()->setText(text);
    edit.paste();
}

void SetSelection(CLimitedTextEdit& edit, int begin, int end)
{
    QTextCursor cursor = edit.textCursor();
    cursor.setPosition(begin);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    edit.setTextCursor(cursor);
}

} // namespace

TEST(LineBreaks, StandForTheLineEndsOfTheEdit)
{
    const struct {
        const char* stored;
        const char* shown;
    } rows[] = {
        {"", ""},
        {"one", "one"},
        {"one</br>two", "one\ntwo"},
        {"</br>one</br></br>two</br>", "\none\n\ntwo\n"},
        {"<br/>one<br>two</BR>", "<br/>one<br>two</BR>"}, // only the one form counts
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ShowLineBreaks(QString::fromLatin1(row.stored)), QString::fromLatin1(row.shown));
        EXPECT_EQ(StoreLineBreaks(QString::fromLatin1(row.shown)), QString::fromLatin1(row.stored));
    }
    EXPECT_EQ(StoreLineBreaks(QStringLiteral("a\r\nb\rc\nd")), QStringLiteral("a</br>b</br>c</br>d"));
    EXPECT_EQ(LengthWithLineEnds(QStringLiteral("a\nb\n")), 6);
}

TEST(LimitedTextEdit, KeepsOfAPastedTextWhatHasRoom)
{
    CLimitedTextEdit edit(10);
    edit.SetText(QStringLiteral("abcdef"));
    SetSelection(edit, 3, 3);
    Paste(edit, QStringLiteral("123456789"));
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("abc1234def"));
    QTest::keyClicks(&edit, QStringLiteral("5"));
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("abc1234def"));
    SetSelection(edit, 0, 3);
    Paste(edit, QStringLiteral("vwxyz"));
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("vwx1234def"));
    SetSelection(edit, 0, 1);
    QTest::keyClicks(&edit, QStringLiteral("V"));
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("Vwx1234def"));
}

TEST(LimitedTextEdit, CountsALineEndAsTwo)
{
    CLimitedTextEdit edit(5);
    edit.SetText(QStringLiteral("a\nb\nc"));
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("a\nb"));
    edit.moveCursor(QTextCursor::End);
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("a\nb"));
    QTest::keyClicks(&edit, QStringLiteral("z"));
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("a\nbz"));
    SetSelection(edit, 1, 2);
    Paste(edit, QStringLiteral("\r\n!"));
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("a\nbz"));
}

TEST(LimitedTextEdit, TakesOfAnInputMethodWhatHasRoom)
{
    CLimitedTextEdit edit(3);
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("日本語文"));
    QCoreApplication::sendEvent(&edit, &event);
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("日本語"));
}

TEST(LimitedTextEdit, NeverLeavesHalfACharacter)
{
    CLimitedTextEdit edit(4);
    edit.SetText(QStringLiteral("abc\U0001F4F7"));
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("abc"));
}

TEST(LimitedTextEdit, UndoesAPasteAsAWhole)
{
    CLimitedTextEdit edit(10);
    edit.SetText(QStringLiteral("abc"));
    edit.moveCursor(QTextCursor::End);
    Paste(edit, QString(1000, QLatin1Char('x')));
    edit.undo();
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("abc"));
}
