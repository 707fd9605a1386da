#include "shell/dialogs/DlgFoundPictures.h"

#include <QPushButton>
#include <QTreeWidget>

#include "shell_support/DialogTools.h"

namespace {

std::vector<CDlgFoundPictures::Match> TwoMatches()
{
    return {{QStringLiteral("/old/2019/D.jpg"), QStringLiteral("/new/2019/D.jpg"), true},
            {QStringLiteral("C:\\old\\E.jpg"), QStringLiteral("/new/E.jpg"), false}};
}

} // namespace

TEST(DlgFoundPictures, ShowsNameNewPlaceAndWhetherTheSizeIsTheSame)
{
    const CDlgFoundPictures dialog(TwoMatches(), 5, QStringLiteral("/new"), nullptr);
    const auto& list = Find<QTreeWidget>(dialog, "matches");
    ASSERT_EQ(list.topLevelItemCount(), 2);
    EXPECT_EQ(list.topLevelItem(0)->text(0), QStringLiteral("D.jpg"));
    EXPECT_EQ(list.topLevelItem(0)->text(1), QStringLiteral("2019/D.jpg"));
    EXPECT_EQ(list.topLevelItem(0)->text(2), QStringLiteral("the same"));
    EXPECT_EQ(list.topLevelItem(1)->text(0), QStringLiteral("E.jpg"));
    EXPECT_EQ(list.topLevelItem(1)->text(2), QStringLiteral("not known to be the same"));
}

TEST(DlgFoundPictures, AllAreChosenUntilOneIsTakenOut)
{
    CDlgFoundPictures dialog(TwoMatches(), 5, QStringLiteral("/new"), nullptr);
    dialog.show();
    EXPECT_EQ(dialog.GetChosen(), (std::vector<size_t>{0, 1}));
    auto& list = Find<QTreeWidget>(dialog, "matches");
    QTest::keyClick(&list, Qt::Key_Space);
    EXPECT_EQ(dialog.GetChosen(), std::vector<size_t>{1});
    list.topLevelItem(1)->setCheckState(0, Qt::Unchecked);
    EXPECT_FALSE(Find<QPushButton>(dialog, "ok").isEnabled());
    list.topLevelItem(1)->setCheckState(0, Qt::Checked);
    Click(dialog, "ok");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST(DlgFoundPictures, IsUsable)
{
    CDlgFoundPictures dialog(TwoMatches(), 5, QStringLiteral("/new"), nullptr);
    ExpectUsable(dialog, QStringLiteral("found-pictures"));
}
