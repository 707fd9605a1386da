#include "shell/dialogs/DlgEarlierVersions.h"

#include <algorithm>

#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

#include "shell_support/DialogTools.h"

namespace {

std::vector<CDlgEarlierVersions::Version> TwoVersions()
{
    return {{QDateTime(QDate(2026, 5, 9), QTime(18, 30)), 12, 340},
            {QDateTime(QDate(2026, 5, 1), QTime(8, 0)), 11, 7}};
}

} // namespace

TEST(DlgEarlierVersions, ShowsDateGalleriesAndPicturesOfEachTheLatestFirst)
{
    CDlgEarlierVersions dialog(QStringLiteral("Trip"), TwoVersions(), nullptr);
    const auto& list = Find<QTreeWidget>(dialog, "versions");
    ASSERT_EQ(list.topLevelItemCount(), 2);
    const QTreeWidgetItem& first = *list.topLevelItem(0);
    EXPECT_EQ(first.text(0), QLocale::system().toString(TwoVersions()[0].changed, QLocale::ShortFormat));
    EXPECT_EQ(first.text(1), QStringLiteral("12"));
    EXPECT_EQ(first.text(2), QStringLiteral("340"));
    EXPECT_EQ(list.topLevelItem(1)->text(2), QStringLiteral("7"));
    EXPECT_EQ(dialog.GetChosen(), 0u);
}

TEST(DlgEarlierVersions, TheChosenOneIsOpenedByTheButtonOrADoubleClick)
{
    CDlgEarlierVersions dialog(QStringLiteral("Trip"), TwoVersions(), nullptr);
    dialog.show();
    QTest::keyClick(&Find<QTreeWidget>(dialog, "versions"), Qt::Key_Down);
    Click(dialog, "ok");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.GetChosen(), 1u);

    dialog.setResult(QDialog::Rejected);
    auto& list = Find<QTreeWidget>(dialog, "versions");
    const QPoint place = list.visualItemRect(list.topLevelItem(0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.GetChosen(), 0u);
}

TEST(DlgEarlierVersions, WithoutAnyItSaysWhyAndOpensNothing)
{
    const CDlgEarlierVersions dialog(QStringLiteral("Trip"), {}, nullptr);
    EXPECT_FALSE(Find<QPushButton>(dialog, "ok").isEnabled());
    const auto labels = dialog.findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
        return label->text().contains(QStringLiteral("no earlier version of \"Trip\""));
    }));
}

TEST(DlgEarlierVersions, IsUsable)
{
    CDlgEarlierVersions dialog(QStringLiteral("Trip"), TwoVersions(), nullptr);
    ExpectUsable(dialog, QStringLiteral("earlier-versions"));
}
