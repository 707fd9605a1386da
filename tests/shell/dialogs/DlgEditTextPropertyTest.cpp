#include "shell/dialogs/DlgEditTextProperty.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "shell_support/DialogTools.h"

namespace {

const QString Name = QStringLiteral("Picture title");

QString Many(int count)
{
    return QString(count, QLatin1Char('x'));
}

} // namespace

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

TEST(DlgEditTextProperty, KeepsNoBreakSpaces)
{
    const QString text = QStringLiteral("10\u00a0km</br>a b");
    EXPECT_EQ(CDlgEditTextProperty(Name, text, {.multiline = true}, nullptr).GetText(), text);
    EXPECT_EQ(CDlgEditTextProperty(Name, QStringLiteral("10\u00a0km"), {}, nullptr).GetText(),
              QStringLiteral("10\u00a0km"));
}
