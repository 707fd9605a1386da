#include "shell/panes/PictureSelection.h"

#include <gtest/gtest.h>

namespace {

using Way = CPictureSelection::Way;

class PictureSelection : public testing::Test {
protected:
    void Click(const char* key, Way way) { selection.Click(QString::fromLatin1(key), way, order); }
    QString Selected() const
    {
        QStringList names;
        for (const QString& key : order) {
            if (selection.Has(key)) {
                names += key;
            }
        }
        return names.join(QLatin1Char(' '));
    }

    QStringList order = QStringLiteral("a b c d e").split(QLatin1Char(' '));
    CPictureSelection selection;
};

} // namespace

TEST_F(PictureSelection, AClickSelectsOneAlone)
{
    EXPECT_TRUE(selection.IsEmpty());
    Click("b", Way::Only);
    Click("d", Way::Only);
    EXPECT_EQ(Selected(), QStringLiteral("d"));
}

TEST_F(PictureSelection, ControlTakesOneMoreInAndOutAgain)
{
    Click("b", Way::Only);
    Click("d", Way::Toggle);
    EXPECT_EQ(Selected(), QStringLiteral("b d"));
    Click("b", Way::Toggle);
    EXPECT_EQ(Selected(), QStringLiteral("d"));
    Click("d", Way::Toggle);
    EXPECT_TRUE(selection.IsEmpty());
}

TEST_F(PictureSelection, ShiftSelectsFromTheLastClickToThisOne)
{
    Click("b", Way::Only);
    Click("d", Way::Range);
    EXPECT_EQ(Selected(), QStringLiteral("b c d"));
    Click("a", Way::Range);
    EXPECT_EQ(Selected(), QStringLiteral("a b"));
    Click("e", Way::Toggle);
    Click("d", Way::Range);
    EXPECT_EQ(Selected(), QStringLiteral("d e"));
}

TEST_F(PictureSelection, AShiftWithoutAClickBeforeSelectsOne)
{
    Click("c", Way::Range);
    EXPECT_EQ(Selected(), QStringLiteral("c"));
    order.removeAll(QStringLiteral("c"));
    Click("e", Way::Range);
    EXPECT_EQ(Selected(), QStringLiteral("e"));
}

TEST_F(PictureSelection, SeveralTakeThePlaceOfTheOthersOrJoinThem)
{
    Click("a", Way::Only);
    selection.Select({QStringLiteral("c"), QStringLiteral("d")}, true);
    EXPECT_EQ(Selected(), QStringLiteral("a c d"));
    selection.Select({QStringLiteral("b")}, false);
    EXPECT_EQ(Selected(), QStringLiteral("b"));
    EXPECT_EQ(selection.GetCount(), 1);
}

TEST_F(PictureSelection, WhatIsGoneIsNotSelectedAnyMore)
{
    selection.Select(order, false);
    order = QStringLiteral("e c x").split(QLatin1Char(' '));
    selection.Keep(order);
    EXPECT_EQ(Selected(), QStringLiteral("e c"));
    selection.Clear();
    EXPECT_TRUE(selection.IsEmpty());
}
