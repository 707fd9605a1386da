#include "shell/dialogs/DlgVisibility.h"

#include <QListWidget>

#include "shell_support/DialogTools.h"

namespace {

CDlgVisibility::Elements SomeElements()
{
    return {
        {QStringLiteral("date"), false}, {QStringLiteral("banner"), true}, {QStringLiteral("&title"), false}};
}

} // namespace

TEST(DlgVisibility, HasARowForEachElementInTheOrderOfTheMap)
{
    const CDlgVisibility dialog(SomeElements(), nullptr);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Change page elements visibility"));
    const auto& list = Find<QListWidget>(dialog, "elements");
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.item(0)->text(), QStringLiteral("&title"));
    EXPECT_EQ(list.item(1)->text(), QStringLiteral("banner"));
    EXPECT_EQ(list.item(2)->text(), QStringLiteral("date"));
    EXPECT_EQ(list.item(0)->checkState(), Qt::Unchecked);
    EXPECT_EQ(list.item(1)->checkState(), Qt::Checked);
    EXPECT_EQ(dialog.GetElements(), SomeElements());
}

TEST(DlgVisibility, ChecksOneByTheSpaceBarAndAllByTheButton)
{
    CDlgVisibility dialog(SomeElements(), nullptr);
    dialog.show();
    QTest::keyClick(&Find<QListWidget>(dialog, "elements"), Qt::Key_Space);
    EXPECT_TRUE(dialog.GetElements()[QStringLiteral("&title")]);
    EXPECT_FALSE(dialog.GetElements()[QStringLiteral("date")]);
    Click(dialog, "checkAll");
    for (const auto& [name, visible] : dialog.GetElements()) {
        EXPECT_TRUE(visible) << qPrintable(name);
    }
    EXPECT_TRUE(dialog.isVisible());
}

TEST(DlgVisibility, DoesWithoutElements)
{
    CDlgVisibility dialog({}, nullptr);
    Click(dialog, "checkAll");
    Click(dialog, "ok");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(dialog.GetElements().empty());
}

TEST(DlgVisibility, IsUsable)
{
    CDlgVisibility dialog(SomeElements(), nullptr);
    ExpectUsable(dialog, QStringLiteral("visibility"));
}
