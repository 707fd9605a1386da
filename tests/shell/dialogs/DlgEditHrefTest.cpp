#include "shell/dialogs/DlgEditHref.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>

#include "shell_support/DialogTools.h"

namespace {

const QString Name = QStringLiteral("Picture title");

QString Many(int count)
{
    return QString(count, QLatin1Char('x'));
}

} // namespace

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

TEST(DlgEditHref, ItsLabelsHaveTheirKeys)
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
