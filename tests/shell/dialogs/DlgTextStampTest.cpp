#include "shell/dialogs/DlgTextStamp.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFontDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include "shell_support/DialogTools.h"

namespace {

constexpr QRgb Grey = 0xFFA9A9A9;

QImage Sample(const QWidget& dialog)
{
    return Find<QLabel>(dialog, "sample").pixmap(Qt::ReturnByValue).toImage();
}

// The part of the sample that the text covers.
QRect FindText(const QWidget& dialog)
{
    const QImage sample = Sample(dialog);
    QRect found;
    for (int y = 0; y < sample.height(); ++y) {
        for (int x = 0; x < sample.width(); ++x) {
            if (sample.pixel(x, y) != Grey) {
                found |= QRect(x, y, 1, 1);
            }
        }
    }
    return found;
}

CTextStampParams Signature()
{
    CTextStampParams params;
    params.position = 10;
    params.text = QStringLiteral("© Anna 2024");
    params.font = QStringLiteral("DejaVu Sans");
    params.font_size = 14;
    params.font_style = 3;
    params.color = 0x0000E0;
    return params;
}

} // namespace

class DlgTextStamp : public testing::Test {
protected:
    DlgTextStamp() { stamps[0] = Signature(); }

    CDlgTextStamp::Stamps stamps;
};

TEST_F(DlgTextStamp, ShowsTheRecordAndHandsItBackUnchanged)
{
    const CDlgTextStamp::Stamps before = stamps;
    CDlgTextStamp dialog(stamps, nullptr);
    EXPECT_EQ(Find<QLineEdit>(dialog, "text").text(), Signature().text);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "bottomRight").isChecked());
    EXPECT_FALSE(Find<QCheckBox>(dialog, "automaticColour").isChecked());
    EXPECT_EQ(Find<QLabel>(dialog, "fontName").text(), QStringLiteral("DejaVu Sans, 14"));
    Click(dialog, "ok");
    EXPECT_EQ(stamps, before);
}

TEST_F(DlgTextStamp, KeepsTheSettingsOfEachClassAndStoresThemOnOkAlone)
{
    const CDlgTextStamp::Stamps before = stamps;
    CDlgTextStamp dialog(stamps, nullptr);
    auto& sizeClass = Find<QComboBox>(dialog, "sizeClass");
    auto& text = Find<QLineEdit>(dialog, "text");
    sizeClass.setCurrentIndex(1);
    EXPECT_TRUE(text.text().isEmpty());
    EXPECT_TRUE(Find<QCheckBox>(dialog, "automaticColour").isChecked());
    QTest::keyClicks(&text, QStringLiteral("middle"));
    sizeClass.setCurrentIndex(0);
    EXPECT_EQ(text.text(), Signature().text);
    Find<QSpinBox>(dialog, "margin").setValue(2);
    EXPECT_EQ(stamps, before);
    Click(dialog, "ok");
    EXPECT_EQ(stamps[1].text, QStringLiteral("middle"));
    EXPECT_EQ(stamps[0].margin, 2);
    EXPECT_EQ(stamps[2], before[2]);
}

TEST_F(DlgTextStamp, SamplesTheTextAtItsPlaceInItsColour)
{
    CDlgTextStamp dialog(stamps, nullptr);
    const QRect text = FindText(dialog);
    const QSize size = Sample(dialog).size();
    EXPECT_GT(text.width(), 60);
    EXPECT_GT(text.left(), size.width() / 3);
    EXPECT_GT(text.top(), size.height() / 2);
    EXPECT_LE(text.right(), size.width() - 10);
    bool foundRed = false;
    for (int x = text.left(); x <= text.right(); ++x) {
        const QRgb pixel = Sample(dialog).pixel(x, text.center().y());
        foundRed = foundRed || (qRed(pixel) > 200 && qBlue(pixel) < 40);
    }
    EXPECT_TRUE(foundRed);
    Click(dialog, "topLeft");
    EXPECT_LT(FindText(dialog).left(), 20);
    EXPECT_LT(FindText(dialog).bottom(), size.height() / 2);
}

TEST_F(DlgTextStamp, SamplesTheTextAsItIsTyped)
{
    CDlgTextStamp dialog(stamps, nullptr);
    Click(dialog, "remove");
    EXPECT_TRUE(Sample(dialog).isNull());
    EXPECT_FALSE(Find<QPushButton>(dialog, "remove").isEnabled());
    auto& text = Find<QLineEdit>(dialog, "text");
    QTest::keyClicks(&text, QStringLiteral("m"));
    const int narrow = FindText(dialog).width();
    QTest::keyClicks(&text, QStringLiteral("mm"));
    EXPECT_GT(FindText(dialog).width(), 2 * narrow);
}

TEST_F(DlgTextStamp, TakesAFontFromTheFontDialog)
{
    stamps[0].font_style = 0;
    CDlgTextStamp dialog(stamps, nullptr);
    const CModalAnswer answer([](QWidget& modal) {
        auto* fonts = qobject_cast<QFontDialog*>(&modal);
        ASSERT_NE(fonts, nullptr);
        EXPECT_EQ(fonts->currentFont().family(), QStringLiteral("DejaVu Sans"));
        QFont font = ToQFont({.height = -32, .faceName = QStringLiteral("DejaVu Serif")});
        font.setUnderline(true);
        fonts->setCurrentFont(font);
        fonts->accept();
    });
    Click(dialog, "font");
    ASSERT_TRUE(answer.WasAsked());
    Click(dialog, "ok");
    EXPECT_EQ(stamps[0].font, QStringLiteral("DejaVu Serif"));
    EXPECT_EQ(stamps[0].font_size, 32);
    EXPECT_EQ(stamps[0].font_style, 4);
    EXPECT_EQ(stamps[0].color, Signature().color);
}

TEST_F(DlgTextStamp, KeepsTheFontWhenTheFontDialogChangesNothing)
{
    for (int style = 0; style < 16; ++style) {
        stamps[0].font_style = style;
        const CDlgTextStamp::Stamps before = stamps;
        CDlgTextStamp dialog(stamps, nullptr);
        const CModalAnswer answer([](QWidget& modal) { qobject_cast<QFontDialog*>(&modal)->accept(); });
        Click(dialog, "font");
        Click(dialog, "ok");
        EXPECT_EQ(stamps[0].font, before[0].font) << style;
        EXPECT_EQ(stamps[0].font_style, style);
    }
}

TEST_F(DlgTextStamp, TakesAColourFromTheColourDialog)
{
    const struct {
        QColor chosen;
        uint32_t color;
        bool isAutomatic;
    } rows[] = {
        {QColor(0x10, 0x20, 0x30), 0x302010, false},
        {QColor(Qt::black), 0, true}, // black can't be chosen: it stands for the automatic colour
    };
    for (const auto& row : rows) {
        CDlgTextStamp dialog(stamps, nullptr);
        const CModalAnswer answer([&](QWidget& modal) {
            auto* colours = qobject_cast<QColorDialog*>(&modal);
            ASSERT_NE(colours, nullptr);
            colours->setCurrentColor(row.chosen);
            colours->accept();
        });
        Click(dialog, "colour");
        EXPECT_EQ(Find<QCheckBox>(dialog, "automaticColour").isChecked(), row.isAutomatic);
        Click(dialog, "ok");
        EXPECT_EQ(stamps[0].color, row.color);
    }
}

TEST_F(DlgTextStamp, KeepsFontAndColourWhenTheirDialogsAreCancelled)
{
    const CDlgTextStamp::Stamps before = stamps;
    CDlgTextStamp dialog(stamps, nullptr);
    for (const char* button : {"font", "colour"}) {
        const CModalAnswer answer([](QWidget& modal) { QTest::keyClick(&modal, Qt::Key_Escape); });
        Click(dialog, button);
        EXPECT_TRUE(answer.WasAsked());
    }
    Click(dialog, "ok");
    EXPECT_EQ(stamps, before);
}

TEST_F(DlgTextStamp, TurnsTheAutomaticColourOnAndOff)
{
    CDlgTextStamp dialog(stamps, nullptr);
    Click(dialog, "automaticColour");
    Click(dialog, "ok");
    EXPECT_EQ(stamps[0].color, 0u);
    CDlgTextStamp again(stamps, nullptr);
    Click(again, "automaticColour");
    Click(again, "ok");
    EXPECT_EQ(stamps[0].color, 1u);
}

TEST_F(DlgTextStamp, TakesOddRecordsOfAProjectFile)
{
    stamps[0].font = QString(100, QLatin1Char('?'));
    stamps[0].font_size = 0;
    stamps[0].text = QStringLiteral("two\nlines");
    CDlgTextStamp dialog(stamps, nullptr);
    EXPECT_FALSE(Sample(dialog).isNull());
    EXPECT_TRUE(FindText(dialog).isEmpty());
    Click(dialog, "ok");
    EXPECT_EQ(stamps[0].text, QStringLiteral("two\nlines"));
    EXPECT_EQ(stamps[0].font_size, 0);
}

TEST_F(DlgTextStamp, IsUsable)
{
    CDlgTextStamp dialog(stamps, nullptr);
    ExpectUsable(dialog, QStringLiteral("signature"));
}

TEST_F(DlgTextStamp, ItsFontButtonHasItsText)
{
    const CDlgTextStamp dialog(stamps, nullptr);
    EXPECT_EQ(Find<QPushButton>(dialog, "font").text(), QStringLiteral("&Font..."));
}
