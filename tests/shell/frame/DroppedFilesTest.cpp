#include "shell/frame/DroppedFiles.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>

#include "common/Exceptions.h"
#include "shell/drag/PictureDrop.h"
#include "shell/frame/GallerySaveDialog.h"
#include "shell/frame/ProjectFile.h"
#include "support/ScratchFolder.h"

TEST(DroppedFiles, PicturesAndThePicturesOfFoldersAreTaken)
{
    const CScratchFolder scratch;
    const QString one = scratch.Write(QStringLiteral("one.JPG"), "");
    const QString jpeg = scratch.Write(QStringLiteral("two.jpeg"), "");
    const QString text = scratch.Write(QStringLiteral("notes.txt"), "");
    scratch.Write(QStringLiteral("folder/b.png"), "");
    scratch.Write(QStringLiteral("folder/A ü#%.gif"), "");
    scratch.Write(QStringLiteral("folder/c.doc"), "");
    scratch.Write(QStringLiteral("folder/deeper/d.png"), "");
    const DroppedFiles files = SortDropped({one, text, scratch.Path(QStringLiteral("folder")), jpeg,
                                            scratch.Path(QStringLiteral("gone")), QString()});
    EXPECT_EQ(files.project, QString());
    EXPECT_EQ(files.pictures, (QStringList{one, scratch.Path(QStringLiteral("folder/A ü#%.gif")),
                                           scratch.Path(QStringLiteral("folder/b.png")), jpeg}));
}

TEST(DroppedFiles, AProjectIsOpenedAndNotAdded)
{
    const DroppedFiles files = SortDropped(
        {QStringLiteral("/a.png"), QStringLiteral("/One.Gallery"), QStringLiteral("/two.gallery")});
    EXPECT_EQ(files.project, QStringLiteral("/One.Gallery"));
}

TEST(DroppedFiles, OnlyLocalFilesCount)
{
    QMimeData data;
    data.setUrls({QUrl(QStringLiteral("https://example.org/a.png")),
                  QUrl::fromLocalFile(QStringLiteral("/b c.png")),
                  QUrl(QStringLiteral("data:image/png;base64,AAAA"))});
    EXPECT_EQ(DroppedPaths(data), QStringList{QStringLiteral("/b c.png")});
    QMimeData text;
    text.setText(QStringLiteral("/b c.png"));
    EXPECT_TRUE(DroppedPaths(text).isEmpty());
}

// The browser control makes its inner widget late, and that one would take the drop.
TEST(PictureDrop, ADropOnALaterInnerWidgetIsTaken)
{
    QWidget window;
    QStringList dropped;
    CPictureDrop drop(&window, [&](const QStringList& paths) { dropped = paths; });
    drop.Watch(window);
    auto* pane = new QWidget(&window);
    auto* inner = new QWidget(pane);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/a.png"))});
    inner->setAcceptDrops(true);
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(inner, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(inner, &event);
    EXPECT_TRUE(event.isAccepted());
    EXPECT_TRUE(dropped.isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dropped.isEmpty(); }));
    EXPECT_EQ(dropped, QStringList{QStringLiteral("/a.png")});
}

TEST(PictureDrop, AWidgetThatTakesDropsGetsThemItself)
{
    class CTaker final : public QWidget {
    public:
        using QWidget::QWidget;
        void dragEnterEvent(QDragEnterEvent* event) override { event->accept(); }
        void dropEvent(QDropEvent*) override { ++dropCount; }
        int dropCount = 0;
    };
    QWidget window;
    CPictureDrop drop(&window, [](const QStringList&) { FAIL(); });
    drop.Watch(window);
    auto* taker = new CTaker(&window);
    taker->setProperty(TakesDropsProperty, true);
    taker->setAcceptDrops(true);
    auto* inner = new CTaker(taker); // as the browser's own widget does
    inner->setAcceptDrops(true);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/a.png"))});
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(inner, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(inner, &event);
    QCoreApplication::processEvents();
    EXPECT_EQ(taker->dropCount, 1);
    EXPECT_EQ(inner->dropCount, 0);
}

TEST(PictureDrop, WhatIsNoFileIsLeftToTheWidget)
{
    QWidget window;
    CPictureDrop drop(&window, [](const QStringList&) { FAIL(); });
    drop.Watch(window);
    QMimeData data;
    data.setText(QStringLiteral("some text"));
    QDragEnterEvent event(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(&window, &event);
    EXPECT_FALSE(event.isAccepted());
}

// Any XML can be read as a project; a drawing that is opened by mistake must not become one.
TEST(ProjectFile, AFileOfAnotherKindIsNoProject)
{
    const CScratchFolder scratch;
    const QString drawing = scratch.Write(QStringLiteral("drawing.svg"), "<svg/>");
    try {
        RequireProjectFile(drawing);
        FAIL();
    } catch (const CGenericException& failure) {
        EXPECT_EQ(failure.GetCaption(), QStringLiteral("The file %1 is not a gallery project.").arg(drawing));
    }
    EXPECT_NO_THROW(RequireProjectFile(scratch.Write(QStringLiteral("a.GALLERY"), "")));
    EXPECT_NO_THROW(RequireProjectFile(scratch.Path(QStringLiteral("new one"))));
    EXPECT_THROW(RequireProjectFile(scratch.Path()), CGenericException);
}

TEST(GallerySaveDialog, AsksForProjectsAndBeforeItOverwritesOne)
{
    using Purpose = CGallerySaveDialog::Purpose;
    for (const Purpose purpose : {Purpose::Save, Purpose::Open}) {
        const CGallerySaveDialog dialog(purpose, QStringLiteral("/Trip.gallery"), nullptr);
        EXPECT_EQ(dialog.nameFilters(), QStringList(QStringLiteral("Image galleries (*.gallery)")));
        EXPECT_EQ(dialog.defaultSuffix(), QStringLiteral("gallery"));
        EXPECT_EQ(dialog.acceptMode(),
                  purpose == Purpose::Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
        EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
    }
}
