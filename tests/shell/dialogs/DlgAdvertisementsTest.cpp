#include "shell/dialogs/DlgAdvertisements.h"

#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>

#include "shell_support/DialogTools.h"

namespace {

CDlgAdvertisements::Sections TwoSections()
{
    return {{QStringLiteral("top"), QStringLiteral("<b>top</b>\r\n")}, {QStringLiteral("bottom"), QString()}};
}

} // namespace

TEST(DlgAdvertisements, KeepsEachSectionsCodeWhenAnotherIsChosen)
{
    CDlgAdvertisements dialog(TwoSections(), nullptr);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Advertisement blocks"));
    auto& section = Find<QComboBox>(dialog, "section");
    auto& code = Find<QPlainTextEdit>(dialog, "code");
    EXPECT_EQ(section.itemText(0), QStringLiteral("bottom"));
    code.insertPlainText(QStringLiteral("<i>x</i>"));
    section.setCurrentIndex(1);
    EXPECT_EQ(code.toPlainText(), QStringLiteral("<b>top</b>\n"));
    section.setCurrentIndex(0);
    EXPECT_EQ(code.toPlainText(), QStringLiteral("<i>x</i>"));
    code.insertPlainText(QStringLiteral("y"));
    Click(dialog, "ok");
    const CDlgAdvertisements::Sections expected{{QStringLiteral("top"), QStringLiteral("<b>top</b>\r\n")},
                                                {QStringLiteral("bottom"), QStringLiteral("y<i>x</i>")}};
    EXPECT_EQ(dialog.GetSections(), expected);
}

TEST(DlgAdvertisements, IsDisabledWithoutSections)
{
    CDlgAdvertisements dialog({}, nullptr);
    EXPECT_FALSE(Find<QComboBox>(dialog, "section").isEnabled());
    EXPECT_FALSE(Find<QPlainTextEdit>(dialog, "code").isEnabled());
    EXPECT_FALSE(Find<QPushButton>(dialog, "ok").isEnabled());
    EXPECT_TRUE(Find<QPushButton>(dialog, "cancel").isEnabled());
    ExpectUsable(dialog, QStringLiteral("advertisements-none"));
}

TEST(DlgAdvertisements, IsUsable)
{
    CDlgAdvertisements dialog(TwoSections(), nullptr);
    ExpectUsable(dialog, QStringLiteral("advertisements"));
}
