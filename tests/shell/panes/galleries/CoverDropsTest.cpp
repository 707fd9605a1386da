#include "shell/panes/galleries/CoverDrops.h"

#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

#include "GalleriesWindow.h"

namespace {

constexpr auto Page = DraggedPictures::Origin::Page;
constexpr auto Folder = DraggedPictures::Origin::Folder;

// 0(1 2 3), with three pictures in the root, which is the current gallery.
class CoverDrops : public testing::Test {
protected:
    void SetUp() override
    {
        for (const char* name : {"a.png", "b.png", "c.png"}) {
            window.GetGallery(0).AppendPicture(window.fixture.WritePicture(QString::fromLatin1(name)), 0);
        }
        for (int i = 0; i < 3; ++i) {
            window.AddChild(0);
        }
        window.Show();
    }

    QRectF FrameOf(int32_t gallery)
    {
        const QVariantList rect =
            window
                .Ask(QStringLiteral("(r => [r.x, r.y, r.width, r.height])(document.querySelector("
                                    "'img[id=gl_%1]').closest('td[colspan]').getBoundingClientRect())")
                         .arg(gallery))
                .toList();
        EXPECT_EQ(rect.size(), 4) << gallery;
        return QRectF(rect[0].toDouble(), rect[1].toDouble(), rect[2].toDouble(), rect[3].toDouble());
    }

    // across: 0 is the left edge of the cover's frame, 1 the right one.
    QPoint PlaceIn(int32_t gallery, double across)
    {
        const QRectF frame = FrameOf(gallery);
        return QPointF(frame.left() + frame.width() * across, frame.center().y()).toPoint();
    }

    QPoint CoverOf(int32_t gallery) { return window.PlaceOf(QStringLiteral("img[id=gl_%1]").arg(gallery)); }

    // "gl_1", the cover that is lit; "100 60", the edges of the frames between which the line stands; or "-".
    QString Mark()
    {
        return window
            .Ask(QStringLiteral(
                "(() => { const lit = document.querySelectorAll('.drop-lit'), "
                "line = document.getElementById('galleries_drop_line'); "
                "return lit.length > 1 || (lit.length && line) ? 'both' : lit.length ? lit[0].id : "
                "line ? 'line ' + Math.round(line.getBoundingClientRect().x + 2) : '-'; })()"))
            .toString();
    }

    bool WaitForMark(const QString& mark)
    {
        const bool isThere = WaitUntil([&] { return Mark() == mark; });
        EXPECT_TRUE(isThere) << qPrintable(Mark()) << " instead of " << qPrintable(mark);
        return isThere;
    }

    // The page of the drop has been asked where it was, and what came of it is done.
    void Settle()
    {
        window.Ask(QStringLiteral("1"));
        QCoreApplication::processEvents();
        window.Ask(QStringLiteral("1"));
    }

    void DragPicturesTo(DraggedPictures::Origin origin, const std::vector<int>& positions, QPoint place,
                        const QString& mark, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        DraggedPictures pictures{.origin = origin, .positions = positions, .paths = {}, .look = {}};
        for (const int position : positions) {
            pictures.paths += window.GetGallery(0).GetPictures().GetAt(position)->GetPath();
        }
        window.Drag({.from = QPoint(3, 3),
                     .start = [&] { DragPictures(pictures, window.GetPage()); },
                     .meanwhile =
                         [&] {
                             window.DragTo(place);
                             WaitForMark(mark);
                             window.Drop(place, modifiers);
                         }});
        Settle();
    }

    QString NamesIn(int32_t gallery)
    {
        QStringList names;
        const CPictureList& list = window.GetGallery(gallery).GetPictures();
        for (int32_t position = 0; position < list.GetCount(); ++position) {
            if (dynamic_cast<const CFilePictureInfo*>(list.GetAt(position))) {
                names += list.GetAt(position)->GetPath().section(QLatin1Char('/'), -1);
            }
        }
        return names.join(QLatin1Char(' '));
    }

    CGalleriesWindow window;
};

} // namespace

TEST_F(CoverDrops, AGalleryIsDraggedToAnotherPlaceOfTheTree)
{
    const struct {
        int32_t dragged;
        int32_t over;
        double across;
        const char* siblings;
        const char* inside; // below gallery 2
    } rows[] = {
        {3, 1, 0.1, "3 1 2", ""}, {3, 2, 0.1, "1 3 2", ""}, {1, 3, 0.9, "2 3 1", ""},
        {1, 2, 0.9, "2 1 3", ""}, {3, 2, 0.5, "1 2", "3"},  {1, 2, 0.3, "2 3", "1"},
    };
    for (const auto& row : rows) {
        const QRectF frame = FrameOf(row.over);
        const bool isInside = row.across > 0.25 && row.across < 0.75;
        const double line = row.across < 0.5 ? frame.left() - 9 : frame.right() + 9;
        const QPoint place = PlaceIn(row.over, row.across);
        window.Drag({.from = CoverOf(row.dragged), .meanwhile = [&] {
                         window.DragTo(place);
                         WaitForMark(isInside ? QStringLiteral("gl_%1").arg(row.over)
                                              : QStringLiteral("line %1").arg(qRound(line)));
                         window.Drop(place);
                     }});
        EXPECT_TRUE(WaitUntil([&] { return window.changes == 1; })) << row.siblings;
        EXPECT_EQ(window.ChildrenOf(0), QString::fromLatin1(row.siblings));
        EXPECT_EQ(window.ChildrenOf(2), QString::fromLatin1(row.inside));
        EXPECT_EQ(Mark(), QStringLiteral("-"));
        window.Undo();
        EXPECT_EQ(window.ChildrenOf(0), QStringLiteral("1 2 3"));
        // It was no click.
        EXPECT_EQ(window.GetCurrent(), 0);
        window.changes = 0;
    }
}

TEST_F(CoverDrops, AGalleryGoesNeitherToItselfNorBelowItselfNorBesideTheRoot)
{
    window.AddChild(1);
    window.GetProject().SetCurrentGallery(1);
    window.Show();
    window.Drag({.from = CoverOf(1), .meanwhile = [&] {
                     // What can be comes first, so that its mark has to go.
                     window.DragTo(PlaceIn(2, 0.5));
                     WaitForMark(QStringLiteral("gl_2"));
                     for (const double across : {0.1, 0.5, 0.9}) {
                         window.DragTo(PlaceIn(4, across));
                         WaitForMark(QStringLiteral("-"));
                         window.DragTo(PlaceIn(0, across));
                         WaitForMark(QStringLiteral("gl_0"));
                         window.DragTo(PlaceIn(1, across));
                         WaitForMark(QStringLiteral("-"));
                     }
                     window.Drop(PlaceIn(4, 0.5));
                 }});
    Settle();
    EXPECT_EQ(window.changes, 0);
    EXPECT_EQ(window.ChildrenOf(0), QStringLiteral("1 2 3"));
    // Dropped on its parent it becomes the last one.
    window.Drag({.from = CoverOf(1), .meanwhile = [&] {
                     window.DragTo(PlaceIn(0, 0.1));
                     WaitForMark(QStringLiteral("gl_0"));
                     window.Drop(PlaceIn(0, 0.1));
                 }});
    EXPECT_TRUE(WaitUntil([&] { return window.changes == 1; }));
    EXPECT_EQ(window.ChildrenOf(0), QStringLiteral("2 3 1"));
}

// The page shows where the cover falls; neither what goes with the mouse nor the buttons may hide that.
TEST_F(CoverDrops, TheDraggedCoverHangsBelowTheMouse)
{
    const QString strips = QStringLiteral("[...document.querySelectorAll('[id$=_menu]')].filter(s => "
                                          "s.style.display == 'inline').length");
    MoveMouse(window.GetPage(), CoverOf(2) - QPoint(2, 0));
    ASSERT_TRUE(WaitForPage(window.GetPage(), strips + QStringLiteral(" == 1")));
    window.Drag({.from = CoverOf(2), .meanwhile = [&] {
                     const QDrag& drag = *window.GetView().findChild<QDrag*>();
                     EXPECT_FALSE(drag.pixmap().isNull());
                     EXPECT_LT(drag.hotSpot().y(), 0);
                     EXPECT_EQ(window.Ask(strips).toInt(), 0);
                     window.Drop(QPoint(3, 3));
                 }});
    Settle();
    EXPECT_EQ(window.changes, 0);
}

TEST_F(CoverDrops, TheRootIsNotDragged)
{
    window.Ask(QStringLiteral("document.addEventListener('dragstart', () => { document.title = 'asked'; })"));
    QTest::mousePress(window.GetView().windowHandle(), Qt::LeftButton, Qt::NoModifier, CoverOf(0));
    for (int step = 1; step <= 5; ++step) {
        QTest::mouseMove(window.GetView().windowHandle(), CoverOf(0) + QPoint(3 * step, 0));
    }
    EXPECT_TRUE(WaitForPage(window.GetPage(), QStringLiteral("document.title == 'asked'")));
    Settle();
    EXPECT_EQ(window.GetView().findChild<QDrag*>(), nullptr);
    window.Drop(CoverOf(0));
}

TEST_F(CoverDrops, PicturesOfThePageMoveToTheGallery)
{
    window.GetGallery(0).RotatePicture(2, true);
    DragPicturesTo(Page, {0, 2}, CoverOf(2), QStringLiteral("gl_2"));
    ASSERT_TRUE(WaitUntil([&] { return window.changes == 1; }));
    EXPECT_EQ(NamesIn(0), QStringLiteral("b.png"));
    EXPECT_EQ(NamesIn(2), QStringLiteral("a.png c.png"));
    EXPECT_EQ(window.GetGallery(2).GetPictures().GetAt(1)->GetAngle(), 1);
    window.Undo();
    EXPECT_EQ(NamesIn(0), QStringLiteral("a.png b.png c.png"));
    EXPECT_FALSE(window.droppedOn);
}

TEST_F(CoverDrops, WithCtrlTheyAreCopied)
{
    DragPicturesTo(Page, {0, 1}, CoverOf(3), QStringLiteral("gl_3"), Qt::ControlModifier);
    ASSERT_TRUE(WaitUntil([&] { return window.changes == 1; }));
    EXPECT_EQ(NamesIn(0), QStringLiteral("a.png b.png c.png"));
    EXPECT_EQ(NamesIn(3), QStringLiteral("a.png b.png"));
}

TEST_F(CoverDrops, OnTheirOwnCoverAndBesideTheCoversPicturesOfThePageStay)
{
    DragPicturesTo(Page, {0}, CoverOf(0), QStringLiteral("-"));
    DragPicturesTo(Page, {0}, QPoint(5, 5), QStringLiteral("-"));
    EXPECT_EQ(window.changes, 0);
    EXPECT_EQ(NamesIn(0), QStringLiteral("a.png b.png c.png"));
    EXPECT_FALSE(window.droppedOn);
}

TEST_F(CoverDrops, PicturesOfTheFolderAreAdded)
{
    DragPicturesTo(Folder, {0, 1}, CoverOf(2), QStringLiteral("gl_2"));
    ASSERT_TRUE(WaitUntil([&] { return window.droppedOn.has_value(); }));
    EXPECT_EQ(window.droppedOn, 2);
    EXPECT_EQ(window.droppedPaths.size(), 2);
    EXPECT_TRUE(window.droppedPaths[1].endsWith(QStringLiteral("/b.png")));
    window.droppedOn.reset();
    DragPicturesTo(Folder, {2}, CoverOf(0), QStringLiteral("gl_0"));
    ASSERT_TRUE(WaitUntil([&] { return window.droppedOn.has_value(); }));
    EXPECT_EQ(window.droppedOn, 0);
    window.droppedOn.reset();
    DragPicturesTo(Folder, {2}, QPoint(5, 5), QStringLiteral("-"));
    ASSERT_TRUE(WaitUntil([&] { return window.droppedOn.has_value(); }));
    EXPECT_EQ(window.droppedOn, CViewGalleries::CurrentGallery);
    EXPECT_EQ(window.changes, 0);
}

// Its galleries and positions are others.
TEST_F(CoverDrops, WhatComesFromAnotherInstanceIsAFileOrNothing)
{
    QMimeData pictures;
    pictures.setData(QStringLiteral("application/x-vistorama-pictures"), "page 0");
    pictures.setUrls({QUrl::fromLocalFile(QStringLiteral("/a.png"))});
    QDragEnterEvent enterPictures(CoverOf(2), Qt::CopyAction, &pictures, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window.GetView(), &enterPictures);
    EXPECT_TRUE(enterPictures.isAccepted());
    QDropEvent event(CoverOf(2), Qt::CopyAction, &pictures, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window.GetView(), &event);
    ASSERT_TRUE(WaitUntil([&] { return window.droppedOn.has_value(); }));
    EXPECT_EQ(window.droppedOn, 2);
    EXPECT_EQ(window.changes, 0);
    QMimeData gallery;
    gallery.setData(QStringLiteral("application/x-vistorama-gallery"), "1");
    QDragEnterEvent enter(CoverOf(2), Qt::MoveAction, &gallery, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window.GetView(), &enter);
    EXPECT_FALSE(enter.isAccepted());
}
