#include "shell/look/Icons.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPalette>
#include <QPixmap>
#include <gtest/gtest.h>

namespace {

// The colour of the most opaque pixel.
QColor InkOf(const QIcon& icon, QIcon::Mode mode = QIcon::Normal)
{
    const QImage image = icon.pixmap(QSize(48, 48), mode).toImage().convertToFormat(QImage::Format_ARGB32);
    QColor ink(Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            ink = colour.alpha() > ink.alpha() ? colour : ink;
        }
    }
    return ink;
}

} // namespace

TEST(Icons, EveryDrawingIsOfOneStrokeStyle)
{
    const QDir artwork(QStringLiteral(ARTWORK_FOLDER));
    const QStringList files = artwork.entryList({QStringLiteral("*.svg")});
    ASSERT_GT(files.size(), 25);
    for (const QString& name : files) {
        // Pictures in their own colours.
        if (name == QStringLiteral("vistorama.svg") || name.startsWith(QStringLiteral("wizard-"))) {
            continue;
        }
        QFile file(artwork.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray drawing = file.readAll();
        EXPECT_TRUE(
            drawing.contains("viewBox=\"0 0 24 24\" fill=\"none\" stroke=\"#000\" stroke-width=\"1.75\" "
                             "stroke-linecap=\"round\" stroke-linejoin=\"round\""))
            << qPrintable(name);
        EXPECT_FALSE(LoadIcon(name.chopped(4)).isNull()) << qPrintable(name);
        EXPECT_GT(InkOf(LoadIcon(name.chopped(4))).alpha(), 200) << qPrintable(name);
    }
}

TEST(Icons, LinesTakeTheColourOfText)
{
    const QPalette former = QApplication::palette();
    const QIcon icon = LoadIcon(QStringLiteral("save"));
    for (const QColor text : {QColor(0x10, 0x20, 0x30), QColor(0xe0, 0xe6, 0xf0)}) {
        QPalette palette = former;
        palette.setColor(QPalette::Active, QPalette::WindowText, text);
        palette.setColor(QPalette::Inactive, QPalette::WindowText, text);
        QApplication::setPalette(palette);
        // The same icon follows.
        EXPECT_NEAR(InkOf(icon).lightness(), text.lightness(), 6);
    }
    QApplication::setPalette(former);
}

TEST(Icons, ANameThatThereIsNoneOfGivesNoIcon)
{
    EXPECT_TRUE(LoadIcon(QStringLiteral("no such icon")).isNull());
    EXPECT_TRUE(LoadIcon(QStringLiteral("../artwork/none")).isNull());
    EXPECT_TRUE(LoadIcon(QString()).isNull());
}

TEST(Icons, TheProgramsIconComesInAllSizes)
{
    const QIcon icon = LoadProgramIcon();
    for (const int size : {16, 32, 48, 256}) {
        EXPECT_EQ(icon.pixmap(QSize(size, size)).size(), QSize(size, size));
    }
    QDir().mkpath(QStringLiteral(SCREENSHOT_FOLDER));
    EXPECT_TRUE(icon.pixmap(QSize(256, 256)).save(QStringLiteral(SCREENSHOT_FOLDER "/program-icon.png")));
}
