#include "shell/drag/DraggedPictures.h"

#include <QDrag>
#include <QMimeData>
#include <QPixmap>
#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>

#include "support/ScratchFolder.h"

namespace {

std::optional<DraggedPictures> Read(const QByteArray& bytes, const QStringList& paths)
{
    QMimeData data;
    data.setData(QStringLiteral("application/x-vistorama-pictures"), bytes);
    QList<QUrl> addresses;
    for (const QString& path : paths) {
        addresses += QUrl::fromLocalFile(path);
    }
    data.setUrls(addresses);
    return ReadDraggedPictures(data);
}

} // namespace

TEST(DraggedPictures, ComeFromTheFolderOrFromThePage)
{
    const auto folder = Read("folder 12", {QStringLiteral("/p/a b#1.jpg")});
    ASSERT_TRUE(folder.has_value());
    EXPECT_EQ(folder->origin, DraggedPictures::Origin::Folder);
    EXPECT_EQ(folder->positions, std::vector<int>{12});
    EXPECT_EQ(folder->paths, QStringList{QStringLiteral("/p/a b#1.jpg")});
    const auto page = Read("page 0 4 7", {QStringLiteral("/a"), QStringLiteral("/b"), QStringLiteral("/c")});
    ASSERT_TRUE(page.has_value());
    EXPECT_EQ(page->origin, DraggedPictures::Origin::Page);
    EXPECT_EQ(page->positions, (std::vector<int>{0, 4, 7}));
    EXPECT_EQ(page->paths.size(), 3);
}

TEST(DraggedPictures, WhatIsNoPictureOfThisProgramIsNone)
{
    const QStringList one = {QStringLiteral("/p/a.jpg")};
    for (const char* bytes : {"", "folder", "folder x", "folder -1", "disk 3", "12", "page 99999999999",
                              "page 1 2", "page ", "page 1 x"}) {
        EXPECT_FALSE(Read(bytes, one).has_value()) << bytes;
    }
    EXPECT_FALSE(Read("page 1", {}).has_value());
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QStringLiteral("/p/a.jpg"))});
    EXPECT_FALSE(ReadDraggedPictures(files).has_value());
}

TEST(DraggedPictures, NothingIsDraggedOnceTheButtonIsUp)
{
    QWidget source;
    DragPictures({}, source); // with a drag it would not come back here
    EXPECT_EQ(source.findChild<QDrag*>(), nullptr);
}

TEST(DraggedPictures, TheNumberStandsOnWhatGoesWithTheMouse)
{
    CScratchFolder temp;
    const QString path = temp.Path(QStringLiteral("look.png"));
    QImage white(240, 160, QImage::Format_RGB32);
    white.fill(Qt::white);
    ASSERT_TRUE(white.save(path));
    const QImage one = DrawDragged(path, 1, 1).toImage();
    const QImage many = DrawDragged(path, 12, 1).toImage();
    EXPECT_EQ(one.size(), QSize(120, 80));
    EXPECT_EQ(many.size(), QSize(120, 80));
    const QPoint badge(120 - 8, 14); // beside the number
    EXPECT_EQ(one.pixel(badge), one.pixel(10, 70));
    EXPECT_NE(many.pixel(badge), one.pixel(badge));
    EXPECT_EQ(many.pixel(10, 70), one.pixel(10, 70));
    const QPixmap dense = DrawDragged(path, 12, 2);
    EXPECT_EQ(dense.size(), QSize(240, 160));
    EXPECT_EQ(dense.deviceIndependentSize(), QSizeF(120, 80));
}

TEST(DraggedPictures, WithoutALookTheNumberIsLeft)
{
    EXPECT_TRUE(DrawDragged(QString(), 1, 1).isNull());
    EXPECT_TRUE(DrawDragged(QStringLiteral("/no/such.png"), 1, 1).isNull());
    EXPECT_FALSE(DrawDragged(QString(), 3, 1).isNull());
}
