#include <mutex>

#include <QDialog>
#include <QLocale>
#include <QMessageBox>
#include <QSpinBox>
#include <QStatusBar>
#include <QTest>

#include "MainFrameFixture.h"
#include "common/Trace.h"
#include "content/ImageCache.h"
#include "shell/panes/galleries/ViewGalleries.h"
#include "shell/panes/pages/ViewPages.h"
#include "shell/web/HTMLView.h"
#include "shell_support/DialogTools.h"
#include "shell_support/ViewWindow.h"

// The main window's views among each other, and its dialogs.

namespace {

// The views that show a change, in their order.
class CHeard {
public:
    CHeard()
    {
        SetTraceSink([lines = lines](const QString& line) {
            const QString begin = QStringLiteral("CView");
            const QString end = QStringLiteral("::UpdateView entering");
            if (line.startsWith(begin) && line.endsWith(end)) {
                const std::lock_guard lock(lines->mutex);
                lines->views += line.mid(begin.size()).chopped(end.size());
            }
        });
    }
    ~CHeard() { SetTraceSink(nullptr); }
    QString Get() const
    {
        const std::lock_guard lock(lines->mutex);
        return lines->views.join(QLatin1Char(' '));
    }

private:
    struct Lines {
        std::mutex mutex;
        QStringList views;
    };
    const std::shared_ptr<Lines> lines = std::make_shared<Lines>();
};

// Its page shows the first picture of the gallery.
class MainFrameViews : public CMainFrameFixture {
protected:
    MainFrameViews() { qputenv("XDG_CACHE_HOME", QFile::encodeName(Path("cache"))); }
    ~MainFrameViews() override { qunsetenv("XDG_CACHE_HOME"); }

    void ShowPicture()
    {
        fixture.WritePage(
            QStringLiteral("one"), QStringLiteral("index.html"),
            "<html><head><%pageheader%></head><body><%picture id=\"photo1\" width=\"40\" height=\"30\" "
            "href=\"a.html\"%></body></html>");
        picture = fixture.WritePicture(QStringLiteral("one.png"));
        Start(Path("a.gallery"));
        frame->AddDropped({picture});
        frame->show();
        frame->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(frame.get()));
        ASSERT_TRUE(WaitForPicture(QStringLiteral("src.endsWith('.png') && photo1.naturalWidth == 40")));
    }
    bool WaitForPicture(const QString& condition)
    {
        return WaitForPage(frame->GetPagesView().GetHTMLView(),
                           QStringLiteral("!!(window.photo1 && photo1.complete && photo1.") + condition +
                               QLatin1Char(')'));
    }
    // As when the person comes back from another window.
    void ComeBack()
    {
        QEvent event(QEvent::ActivationChange);
        QCoreApplication::sendEvent(frame.get(), &event);
    }

    QString picture;
};

} // namespace

TEST_F(MainFrameViews, AllViewsHearOfAChangeInTheirOrder)
{
    Start(Path("a.gallery"));
    const CHeard heard;
    CViewGalleriesExternalDispatchCommands& galleries = frame->GetGalleriesView();
    galleries.SetCurrentGallery(0);
    EXPECT_EQ(heard.Get(), QStringLiteral("Pages Folder"));
}

TEST_F(MainFrameViews, ThePageIsMadeAnewBehindAnEffectDialogThatWasAccepted)
{
    Start(Path("a.gallery"));
    CHTMLView& page = frame->GetPagesView().GetHTMLView();
    for (const int command : {32792, 32794}) {
        for (const bool accepted : {false, true}) {
            page.RunScript(QStringLiteral("window.isOld = true"));
            const CModalAnswer answer([&](QWidget& dialog) {
                auto& asked = static_cast<QDialog&>(dialog);
                for (QSpinBox* number : asked.findChildren<QSpinBox*>()) {
                    number->setValue(number->value() + 1);
                }
                accepted ? asked.accept() : asked.reject();
            });
            frame->OnCommand(command);
            EXPECT_TRUE(answer.WasAsked()) << command;
            // A script waits for a page that is on its way.
            QVariant isNew;
            page.RunScript(QStringLiteral("!window.isOld"), [&](const QVariant& value) { isNew = value; });
            ASSERT_TRUE(QTest::qWaitFor([&] { return isNew.isValid(); }, 60'000)) << command;
            EXPECT_EQ(isNew.toBool(), accepted) << command;
        }
    }
}

TEST_F(MainFrameViews, EachDialogOfTheMenusOpens)
{
    Start(Path("a.gallery"));
    const struct {
        int command;
        const char* title;
    } rows[] = {
        {57600, "New pictures gallery"}, {57601, "Open project"},    {57604, "Save project as"},
        {57664, "About Vistorama"},      {32792, "Image watermark"}, {32794, "Image signature"},
        {32797, "Advertisement blocks"}, {32780, "Deploy Wizard"},
    };
    for (const auto& row : rows) {
        QString title;
        CModalAnswer answer([&](QWidget& dialog) {
            title = dialog.windowTitle();
            static_cast<QDialog&>(dialog).reject();
        });
        frame->OnCommand(row.command);
        EXPECT_TRUE(answer.WasAsked()) << row.command;
        EXPECT_EQ(title, QString::fromLatin1(row.title)) << row.command;
        EXPECT_EQ(frame->windowTitle(), QStringLiteral("Vistorama - a")) << row.command;
    }
}

TEST_F(MainFrameViews, NothingThatIsDroppedIsTakenBehindADialog)
{
    Start(Path("a.gallery"));
    const QString one = fixture.WritePicture(QStringLiteral("one.jpg"));
    for (const int command : {32792, 32797}) {
        const CModalAnswer answer([&](QWidget& dialog) {
            frame->AddDropped({one});
            frame->AddDropped({Path("b.gallery")});
            static_cast<QDialog&>(dialog).reject();
        });
        frame->OnCommand(command);
        EXPECT_TRUE(answer.WasAsked()) << command;
        EXPECT_EQ(frame->windowTitle(), QStringLiteral("Vistorama - a")) << command;
        EXPECT_EQ(frame->GetProject().GetCurrentGallery()->GetPictures().GetCount(), 0) << command;
    }
}

TEST_F(MainFrameViews, FilesAreLookedAtWhenThePersonComesBackToTheWindow)
{
    ShowPicture();
    ASSERT_TRUE(QFile::remove(picture));
    ComeBack();
    EXPECT_TRUE(WaitForPicture(QStringLiteral("hasAttribute('data-absent')")));
    fixture.WritePicture(QStringLiteral("one.png"), QSize(20, 30), 0x993366);
    ComeBack();
    EXPECT_TRUE(WaitForPicture(QStringLiteral("naturalWidth == 20")));
    fixture.WritePicture(QStringLiteral("one.png"), QSize(30, 30), 0x336699);
    ComeBack();
    EXPECT_TRUE(WaitForPicture(QStringLiteral("naturalWidth == 30")));
}

TEST_F(MainFrameViews, TheCacheIsEmptiedIfThePersonAgreesAndThePageStays)
{
    ShowPicture();
    const int64_t size = GetSizeOfCaches();
    ASSERT_GT(size, 0);
    frame->statusBar()->clearMessage();
    for (const bool agrees : {false, true}) {
        QString question;
        const CModalAnswer answer([&](QWidget& box) {
            question = static_cast<QMessageBox&>(box).text();
            static_cast<QDialog&>(box).done(agrees ? QMessageBox::Ok : QMessageBox::Cancel);
        });
        frame->OnCommand(32802);
        EXPECT_TRUE(question.contains(QLocale().formattedDataSize(size))) << qPrintable(question);
        EXPECT_EQ(frame->statusBar()->currentMessage().isEmpty(), !agrees);
        // The page has made its picture again.
        EXPECT_TRUE(WaitForPicture(QStringLiteral("naturalWidth == 40")));
        EXPECT_GT(GetSizeOfCaches(), 0);
    }
}
