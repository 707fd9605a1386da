#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "DialogTools.h"
#include "shell/dialogs/DlgEditHref.h"
#include "shell/dialogs/DlgEditTextProperty.h"
#include "shell/dialogs/EditedText.h"

namespace {

const QString Name = QStringLiteral("Picture title");

QString Many(int count)
{
    return QString(count, QLatin1Char('x'));
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

TEST(DlgEditTextProperty, StoresATextOfTwoLinesWithOneBreak)
{
    CDlgEditTextProperty dialog(Name, QString(), {.multiline = true}, nullptr);
    auto& edit = Find<QPlainTextEdit>(dialog, "text");
    QTest::keyClicks(&edit, QStringLiteral("first"));
    QTest::keyClick(&edit, Qt::Key_Return);
    QTest::keyClicks(&edit, QStringLiteral("second"));
    EXPECT_EQ(dialog.GetText(), QStringLiteral("first</br>second"));
}

TEST(DlgEditTextProperty, ShowsTheTitleTheTextAndTheNote)
{
    const CDlgEditTextProperty wide(Name, QStringLiteral("a</br>b"), {.multiline = true, .galleryWide = true},
                                    nullptr);
    EXPECT_EQ(wide.windowTitle(), Name);
    EXPECT_EQ(Find<QPlainTextEdit>(wide, "text").toPlainText(), QStringLiteral("a\nb"));
    EXPECT_EQ(Find<QLabel>(wide, "note").text(),
              QStringLiteral("Note: This text will be changed in each gallery page"));
    EXPECT_EQ(wide.GetText(), QStringLiteral("a</br>b"));

    const CDlgEditTextProperty line(Name, QStringLiteral("a</br>b"), {}, nullptr);
    EXPECT_EQ(line.findChild<QLabel*>(QStringLiteral("note")), nullptr);
    // One line is edited as it is stored.
    EXPECT_EQ(Find<QLineEdit>(line, "text").text(), QStringLiteral("a</br>b"));
}

TEST(DlgEditTextProperty, CutsWhatIsTooLong)
{
    CDlgEditTextProperty line(Name, Many(2000), {}, nullptr);
    EXPECT_EQ(line.GetText(), Many(1024));
    QTest::keyClicks(&Find<QLineEdit>(line, "text"), QStringLiteral("y"));
    EXPECT_LE(line.GetText().size(), 1024);

    const CDlgEditTextProperty lines(Name, Many(20000), {.multiline = true}, nullptr);
    EXPECT_EQ(lines.GetText(), Many(16192));
}

TEST(DlgEditTextProperty, IsLeftByEnterAndEscape)
{
    CDlgEditTextProperty line(Name, QStringLiteral("a"), {}, nullptr);
    line.show();
    QTest::keyClick(&Find<QLineEdit>(line, "text"), Qt::Key_Return);
    EXPECT_EQ(line.result(), QDialog::Accepted);
    line.show();
    QTest::keyClick(&line, Qt::Key_Escape);
    EXPECT_EQ(line.result(), QDialog::Rejected);
    EXPECT_FALSE(line.isVisible());
}

TEST(DlgEditTextProperty, IsUsable)
{
    CDlgEditTextProperty line(Name, QStringLiteral("Morning over the hills"), {}, nullptr);
    ExpectUsable(line, QStringLiteral("text-line"));
    CDlgEditTextProperty lines(Name, QStringLiteral("Morning over the hills</br>seen from the road"),
                               {.multiline = true, .galleryWide = true}, nullptr);
    ExpectUsable(lines, QStringLiteral("text-lines"));
}

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
    Paste(edit, Many(1000));
    edit.undo();
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("abc"));
}

TEST(DlgEditHref, EditsBothTexts)
{
    CDlgEditHref dialog(Name, {QStringLiteral("http://a.example/"), QStringLiteral("A site")}, nullptr);
    EXPECT_EQ(dialog.windowTitle(), Name);
    EXPECT_EQ(Find<QLineEdit>(dialog, "url").text(), QStringLiteral("http://a.example/"));
    EXPECT_EQ(Find<QLineEdit>(dialog, "text").text(), QStringLiteral("A site"));
    Find<QLineEdit>(dialog, "url").setText(QStringLiteral("b.html"));
    Find<QLineEdit>(dialog, "text").setText(QStringLiteral("<b>\"B\" & ä</b>"));
    EXPECT_EQ(dialog.GetReference().url, QStringLiteral("b.html"));
    EXPECT_EQ(dialog.GetReference().text, QStringLiteral("<b>\"B\" & ä</b>"));
}

TEST(DlgEditHref, CutsWhatIsTooLong)
{
    CDlgEditHref dialog(Name, {Many(513), Many(600)}, nullptr);
    EXPECT_EQ(dialog.GetReference().url, Many(512));
    EXPECT_EQ(dialog.GetReference().text, Many(512));
    QApplication::clipboard()->setText(QStringLiteral("line one\nline two"));
    Find<QLineEdit>(dialog, "url").selectAll();
    Find<QLineEdit>(dialog, "url").paste();
    EXPECT_EQ(dialog.GetReference().url, QStringLiteral("line one line two"));
}

TEST(DlgEditHref, IsUsable)
{
    CDlgEditHref dialog(Name, {QStringLiteral("http://a.example/"), QStringLiteral("A site")}, nullptr);
    ExpectUsable(dialog, QStringLiteral("reference"));
}

TEST(DlgEditTextProperty, KeepsNoBreakSpaces)
{
    const QString text = QStringLiteral("10\u00a0km</br>a b");
    EXPECT_EQ(CDlgEditTextProperty(Name, text, {.multiline = true}, nullptr).GetText(), text);
    EXPECT_EQ(CDlgEditTextProperty(Name, QStringLiteral("10\u00a0km"), {}, nullptr).GetText(),
              QStringLiteral("10\u00a0km"));
}

TEST(DlgEditHref, ItsLabelsAreSettled)
{
    const CDlgEditHref dialog(Name, {}, nullptr);
    QStringList labels;
    for (const char* field : {"url", "text"}) {
        for (const QLabel* label : dialog.findChildren<QLabel*>()) {
            if (label->buddy() == &Find<QLineEdit>(dialog, field)) {
                labels += label->text();
            }
        }
    }
    EXPECT_EQ(labels, QStringList({QStringLiteral("&URL:"), QStringLiteral("&Reference text:")}));
}
