#include "shell/drag/DraggedPicture.h"

#include <QDrag>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

std::optional<DraggedPicture> Read(const QByteArray& bytes)
{
    QMimeData data;
    data.setData(QStringLiteral("application/x-vistorama-picture"), bytes);
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/p/a b#1.jpg"))});
    return ReadDraggedPicture(data);
}

} // namespace

TEST(DraggedPicture, ComesFromTheFolderOrFromThePage)
{
    const auto folder = Read("folder 12");
    ASSERT_TRUE(folder.has_value());
    EXPECT_EQ(folder->origin, DraggedPicture::Origin::Folder);
    EXPECT_EQ(folder->position, 12);
    EXPECT_EQ(folder->path, QStringLiteral("/p/a b#1.jpg"));
    const auto page = Read("page 0");
    ASSERT_TRUE(page.has_value());
    EXPECT_EQ(page->origin, DraggedPicture::Origin::Page);
    EXPECT_EQ(page->position, 0);
}

TEST(DraggedPicture, WhatIsNoPictureOfThisProgramIsNone)
{
    for (const char* bytes : {"", "folder", "folder x", "folder -1", "disk 3", "12", "page 99999999999"}) {
        EXPECT_FALSE(Read(bytes).has_value()) << bytes;
    }
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QStringLiteral("/p/a.jpg"))});
    EXPECT_FALSE(ReadDraggedPicture(files).has_value());
}

TEST(DraggedPicture, NothingIsDraggedOnceTheButtonIsUp)
{
    QWidget source;
    DragPicture({}, source); // with a drag it would not come back here
    EXPECT_EQ(source.findChild<QDrag*>(), nullptr);
}
