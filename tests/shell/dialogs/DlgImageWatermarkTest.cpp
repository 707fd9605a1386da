#include "shell/dialogs/DlgImageWatermark.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include "shell/dialogs/StampValues.h"
#include "shell_support/DialogTools.h"
#include "support/ProjectFixture.h"

namespace {

constexpr QRgb Grey = 0xFFA9A9A9;
constexpr uint32_t Red = 0xE02010;

} // namespace

class DlgImageWatermark : public testing::Test {
protected:
    DlgImageWatermark() { stamps[0].file = mark; }

    QImage Sample(const QWidget& dialog) const
    {
        return Find<QLabel>(dialog, "sample").pixmap(Qt::ReturnByValue).toImage();
    }

    static bool IsRed(QRgb pixel) { return qRed(pixel) > 200 && qGreen(pixel) < 60; }

    // Where in the sample the stamp is.
    QRect FindStamp(const QWidget& dialog) const
    {
        const QImage sample = Sample(dialog);
        QRect found;
        for (int y = 0; y < sample.height(); ++y) {
            for (int x = 0; x < sample.width(); ++x) {
                if (IsRed(sample.pixel(x, y))) {
                    found |= QRect(x, y, 1, 1);
                }
            }
        }
        return found;
    }

    CProjectFixture fixture;
    const QString mark = fixture.WritePicture(QStringLiteral("mark.png"), QSize(40, 20), Red);
    CDlgImageWatermark::Stamps stamps;
};

TEST_F(DlgImageWatermark, ShowsTheRecordOfTheFirstClass)
{
    stamps[0] = {{.position = 10, .margin = 7}, mark, 25};
    const CDlgImageWatermark dialog(stamps, nullptr);
    const auto& sizeClass = Find<QComboBox>(dialog, "sizeClass");
    ASSERT_EQ(sizeClass.count(), 3);
    EXPECT_EQ(sizeClass.itemText(0), QStringLiteral("Small pictures (<200x200 pixels)"));
    EXPECT_EQ(sizeClass.itemText(1), QStringLiteral("Mid-size pictures (200x200<600x600)"));
    EXPECT_EQ(sizeClass.itemText(2), QStringLiteral("Large pictures (>600x600)"));
    EXPECT_EQ(sizeClass.currentIndex(), 0);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "bottomRight").isChecked());
    EXPECT_EQ(Find<QSpinBox>(dialog, "margin").value(), 7);
    EXPECT_EQ(Find<QSpinBox>(dialog, "transparency").value(), 25);
    EXPECT_EQ(Find<QLineEdit>(dialog, "file").text(), mark);
}

TEST_F(DlgImageWatermark, KeepsTheSettingsOfEachClassWithoutOk)
{
    CDlgImageWatermark dialog(stamps, nullptr);
    auto& sizeClass = Find<QComboBox>(dialog, "sizeClass");
    Click(dialog, "topRight");
    Find<QSpinBox>(dialog, "margin").setValue(3);
    Find<QSpinBox>(dialog, "transparency").setValue(50);
    sizeClass.setCurrentIndex(2);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "centre").isChecked());
    EXPECT_EQ(Find<QSpinBox>(dialog, "margin").value(), 10);
    EXPECT_EQ(Find<QLineEdit>(dialog, "file").text(), QString());
    dialog.ChooseFile(mark);
    sizeClass.setCurrentIndex(0);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "topRight").isChecked());
    EXPECT_EQ(Find<QSpinBox>(dialog, "margin").value(), 3);
    EXPECT_EQ(Find<QSpinBox>(dialog, "transparency").value(), 50);
    sizeClass.setCurrentIndex(2);
    EXPECT_EQ(Find<QLineEdit>(dialog, "file").text(), mark);
}

TEST_F(DlgImageWatermark, ChangesTheGalleryOnOkAlone)
{
    const CDlgImageWatermark::Stamps before = stamps;
    CDlgImageWatermark cancelled(stamps, nullptr);
    Click(cancelled, "bottom");
    Find<QComboBox>(cancelled, "sizeClass").setCurrentIndex(1);
    Find<QSpinBox>(cancelled, "margin").setValue(1);
    QTest::keyClick(&cancelled, Qt::Key_Escape);
    EXPECT_EQ(stamps, before);

    CDlgImageWatermark accepted(stamps, nullptr);
    Click(accepted, "bottom");
    Find<QComboBox>(accepted, "sizeClass").setCurrentIndex(1);
    Find<QSpinBox>(accepted, "margin").setValue(1);
    Click(accepted, "ok");
    EXPECT_EQ(stamps[0], (CImageStampParams{{.position = 8, .margin = 10}, mark, 0}));
    EXPECT_EQ(stamps[1], (CImageStampParams{{.position = 0, .margin = 1}, QString(), 0}));
    EXPECT_EQ(stamps[2], before[2]);
}

TEST_F(DlgImageWatermark, SamplesTheStampAtEachPlace)
{
    CDlgImageWatermark dialog(stamps, nullptr);
    Find<QSpinBox>(dialog, "margin").setValue(6);
    const QSize size = Sample(dialog).size();
    EXPECT_EQ(size, Find<QLabel>(dialog, "sample").contentsRect().size() - QSize(1, 1));
    const int x[] = {6, (size.width() - 41) / 2, size.width() - 40 - 6 - 1};
    const int y[] = {6, (size.height() - 21) / 2, size.height() - 20 - 6 - 1};
    for (size_t i = 0; i < StampPlaces.size(); ++i) {
        Click(dialog, StampPlaces[i].objectName);
        EXPECT_EQ(FindStamp(dialog), QRect(x[i % 3], y[i / 3], 40, 20)) << StampPlaces[i].objectName;
    }
    EXPECT_EQ(Sample(dialog).pixel(0, 0), Grey);
}

TEST_F(DlgImageWatermark, SamplesALargeStampAtSixtyPercent)
{
    stamps[0].file = fixture.WritePicture(QStringLiteral("large.png"), QSize(1200, 300), Red);
    const CDlgImageWatermark dialog(stamps, nullptr);
    const int width = Sample(dialog).width() * 60 / 100;
    EXPECT_EQ(FindStamp(dialog).size(), QSize(width, width / 4));
}

TEST_F(DlgImageWatermark, UpdatesTheSampleAtEachChange)
{
    CDlgImageWatermark dialog(stamps, nullptr);
    Click(dialog, "topLeft");
    EXPECT_EQ(FindStamp(dialog).topLeft(), QPoint(10, 10));
    auto& margin = Find<QSpinBox>(dialog, "margin");
    margin.selectAll();
    QTest::keyClicks(&margin, QStringLiteral("33"));
    EXPECT_EQ(FindStamp(dialog).topLeft(), QPoint(33, 33));
    Find<QSpinBox>(dialog, "transparency").setValue(100);
    EXPECT_TRUE(FindStamp(dialog).isEmpty());
    EXPECT_EQ(Sample(dialog).pixel(40, 40), Grey);
    Find<QSpinBox>(dialog, "transparency").setValue(50);
    EXPECT_NEAR(qRed(Sample(dialog).pixel(40, 40)), (0xE0 + 0xA9) / 2, 2);
}

TEST_F(DlgImageWatermark, RemovesThePicture)
{
    CDlgImageWatermark dialog(stamps, nullptr);
    Click(dialog, "remove");
    EXPECT_TRUE(Sample(dialog).isNull());
    EXPECT_FALSE(Find<QPushButton>(dialog, "remove").isEnabled());
    Click(dialog, "ok");
    EXPECT_EQ(stamps[0].file, QString());
}

TEST_F(DlgImageWatermark, TakesAFileFromTheFileDialog)
{
    const QString other = fixture.WritePicture(QStringLiteral("other.png"));
    CDlgImageWatermark dialog(stamps, nullptr);
    const CModalAnswer answer([&](QWidget& modal) {
        auto* files = qobject_cast<QFileDialog*>(&modal);
        ASSERT_NE(files, nullptr);
        files->selectFile(other);
        static_cast<QDialog*>(files)->accept();
    });
    Click(dialog, "change");
    EXPECT_TRUE(answer.WasAsked());
    EXPECT_EQ(Find<QLineEdit>(dialog, "file").text(), other);
}

TEST_F(DlgImageWatermark, KeepsTheOldFileWhenTheNewOneIsNoPicture)
{
    const QString text = fixture.scratch.Write(QStringLiteral("photos/words.png"), "no picture");
    CDlgImageWatermark dialog(stamps, nullptr);
    const CMessageAnswer message;
    dialog.ChooseFile(text);
    EXPECT_TRUE(message.GetText().contains(text)) << qPrintable(message.GetText());
    EXPECT_TRUE(message.GetText().contains(QStringLiteral("not a picture")));
    EXPECT_EQ(Find<QLineEdit>(dialog, "file").text(), mark);
}

TEST_F(DlgImageWatermark, SaysThatAStoredPictureIsGone)
{
    stamps[0].file = fixture.scratch.Path(QStringLiteral("gone.png"));
    CDlgImageWatermark dialog(stamps, nullptr);
    EXPECT_TRUE(Find<QLabel>(dialog, "problem").text().contains(stamps[0].file));
    EXPECT_TRUE(FindStamp(dialog).isEmpty());
    Click(dialog, "ok");
    EXPECT_EQ(stamps[0].file, fixture.scratch.Path(QStringLiteral("gone.png")));
}

TEST_F(DlgImageWatermark, TakesOddRecordsOfAProjectFile)
{
    stamps[0] = {{.position = 15, .margin = -5}, mark, 700};
    CDlgImageWatermark dialog(stamps, nullptr);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "topLeft").isChecked());
    EXPECT_EQ(Find<QSpinBox>(dialog, "margin").value(), 0);
    EXPECT_EQ(Find<QSpinBox>(dialog, "transparency").value(), 100);
}

TEST_F(DlgImageWatermark, GoesThroughTheGridByArrowKeys)
{
    CDlgImageWatermark dialog(stamps, nullptr);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto& centre = Find<QRadioButton>(dialog, "centre");
    centre.setFocus();
    QTest::keyClick(&centre, Qt::Key_Right);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "right").isChecked());
    QTest::keyClick(&Find<QRadioButton>(dialog, "right"), Qt::Key_Up);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "topRight").isChecked());
}

TEST_F(DlgImageWatermark, IsUsable)
{
    stamps[0].position = 10;
    CDlgImageWatermark dialog(stamps, nullptr);
    ExpectUsable(dialog, QStringLiteral("watermark"));
}

TEST_F(DlgImageWatermark, ItsButtonsHaveTheirTexts)
{
    const CDlgImageWatermark dialog(stamps, nullptr);
    EXPECT_EQ(Find<QPushButton>(dialog, "change").text(), QStringLiteral("&Change..."));
    EXPECT_EQ(Find<QPushButton>(dialog, "remove").text(), QStringLiteral("&Remove"));
}
