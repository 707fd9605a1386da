#include "shell/look/FloatingBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class CBar final : public CFloatingBar {
public:
    CBar(QWidget& over, const QString& words) : CFloatingBar(over), label(new QLabel(words, this))
    {
        (new QHBoxLayout(this))->addWidget(label);
    }
    void Say(const QString& words)
    {
        label->setText(words);
        Fit();
    }

private:
    QLabel* const label;
};

class FloatingBar : public testing::Test {
protected:
    FloatingBar()
    {
        window.resize(600, 400);
        window.show();
    }
    void ExpectInTheMiddle(const CBar& bar)
    {
        EXPECT_LE(std::abs(bar.geometry().center().x() - window.width() / 2), 1);
    }

    QWidget window;
    CBar first{window, QStringLiteral("first")};
    CBar second{window, QStringLiteral("second, which is longer")};
};

} // namespace

TEST_F(FloatingBar, StandsInTheMiddleOfTheLowerEdge)
{
    EXPECT_FALSE(first.isVisible());
    first.show();
    ExpectInTheMiddle(first);
    EXPECT_EQ(first.geometry().bottom() + 1, 400 - 16);
    EXPECT_EQ(first.focusPolicy(), Qt::NoFocus);
    first.Say(QStringLiteral("first, and much more than before"));
    ExpectInTheMiddle(first);
}

TEST_F(FloatingBar, TwoStandOneAboveTheOther)
{
    second.show();
    const int alone = second.y();
    first.show();
    EXPECT_EQ(first.geometry().bottom() + 1, 400 - 16);
    EXPECT_EQ(second.geometry().bottom() + 1, first.y() - 8);
    first.hide();
    EXPECT_EQ(second.y(), alone);
}

TEST_F(FloatingBar, FollowsTheWidgetAndIsNeverWider)
{
    second.show();
    window.resize(800, 500);
    QCoreApplication::processEvents();
    ExpectInTheMiddle(second);
    EXPECT_EQ(second.geometry().bottom() + 1, 500 - 16);
    window.resize(120, 500);
    QCoreApplication::processEvents();
    EXPECT_LE(second.width(), 120 - 2 * 16);
}
