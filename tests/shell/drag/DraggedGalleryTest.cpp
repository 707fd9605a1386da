#include "shell/drag/DraggedGallery.h"

#include <QDrag>
#include <QMimeData>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

std::optional<int32_t> Read(const QByteArray& bytes)
{
    QMimeData data;
    data.setData(QStringLiteral("application/x-vistorama-gallery"), bytes);
    return ReadDraggedGallery(data);
}

} // namespace

TEST(DraggedGallery, IsKnownByItsIndex)
{
    EXPECT_EQ(Read("0"), 0);
    EXPECT_EQ(Read("17"), 17);
    EXPECT_EQ(Read("2147483647"), 2147483647);
}

TEST(DraggedGallery, WhatIsNoGalleryOfThisProgramIsNone)
{
    for (const char* bytes : {"", "x", "1x", "2147483648", "1 2"}) {
        EXPECT_EQ(Read(bytes), std::nullopt) << bytes;
    }
    QMimeData pictures;
    pictures.setData(QStringLiteral("application/x-vistorama-pictures"), "page 1");
    EXPECT_EQ(ReadDraggedGallery(pictures), std::nullopt);
}

TEST(DraggedGallery, NothingIsDraggedOnceTheButtonIsUp)
{
    QWidget source;
    DragGallery({.index = 3}, source); // with a drag it would not come back here
    EXPECT_EQ(source.findChild<QDrag*>(), nullptr);
}
