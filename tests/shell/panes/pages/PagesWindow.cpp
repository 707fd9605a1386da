#include "PagesWindow.h"

#include <QTest>
#include <gtest/gtest.h>

#include "common/FileSystem.h"
#include "editing/PictureActs.h"

namespace {

const QByteArray header = "<!DOCTYPE html><html><head><%pageheader%></head><body style=\"margin:0\">";

QByteArray Pictures(int count)
{
    QByteArray elements;
    for (int i = 1; i <= count; ++i) {
        const QByteArray id = "photo" + QByteArray::number(i);
        elements += "<%if <%=" + id + ".file_name%><%picture id=\"" + id +
                    "\" width=\"200\" height=\"150\" href=\"<%=" + id + ".#large.html%>\" alt=\"<%=" + id +
                    ".file_name%>\"%>%>\n";
    }
    return elements;
}

void WriteLayouts(const CProjectFixture& fixture)
{
    fixture.WriteStyle(QStringLiteral("Amber"));
    fixture.WriteStyle(QStringLiteral("Blue"));
    fixture.scratch.Write(QStringLiteral("program/Styles/Other.xml"),
                          "<style css=\"style.css\" name=\"Other\" folder=\"Blue\" group=\"Standard\"/>");
    fixture.scratch.Write(QStringLiteral("program/Templates/two.xml"),
                          "<template name=\"two\" folder=\"two\" group=\"Standard\">"
                          "<page file=\"index.html\" multipage=\"1\"/></template>");
    fixture.WritePage(QStringLiteral("two"), QStringLiteral("index.html"), header + "Two" + Pictures(2));
    fixture.WriteLayout(
        QStringLiteral("one"),
        "<page file=\"index.html\" multipage=\"1\"/><page file=\"large.html\" multipage=\"1\"/>");
    fixture.WritePage(
        QStringLiteral("one"), QStringLiteral("index.html"),
        header +
            "<h1><%textspan property=\"gallery.title\" default=\"Title of <%=page.number%>\" "
            "name=\"Heading\"%></h1>" +
            Pictures(4) +
            "<p><%textref id=\"home\" name=\"Home\" href_property=\"gallery.home_href\" "
            "default_href=\"no.html\" "
            "text=\"gallery.home_text\" default_text=\"Go home\"%></p>"
            "<%if <%isvisible layout=\"Footer\"%><p>The footer</p>%><p style=\"height:2000px\"></p>");
    fixture.WritePage(QStringLiteral("one"), QStringLiteral("large.html"), header + "Large" + Pictures(1));
}

} // namespace

CPagesWindow::CPagesWindow(int pictures)
{
    WriteLayouts(fixture);
    fixture.NewProject();
    fixture.GetRoot().SetTemplate(QStringLiteral("one.xml"));
    for (int i = 0; i < pictures; ++i) {
        fixture.GetRoot().AppendPicture(
            fixture.WritePicture(QStringLiteral("%1.png").arg(QChar(QLatin1Char(char('a' + i)))),
                                 QSize(200, 150), 0x203040u + 0x10101u * static_cast<uint32_t>(i)),
            0);
    }
    desk =
        std::make_unique<CEditingDesk>(GetProject(), CEditingDesk::Listener{.changed = [this] { ++changes; },
                                                                            .edited =
                                                                                [this](const Edited& what) {
                                                                                    edited.push_back(what);
                                                                                }});
    view = std::make_unique<CViewPages>(
        CViewPages::Services{.desk = *desk,
                             .browser = {},
                             .openRecent = [this](int32_t place) { recent = place; },
                             .findMissing = [this] { ++searches; },
                             .findPicture =
                                 [this](const QString& path) {
                                     sought += path;
                                 }});
    desk->AddView(*view);
    desk->AddView(listener);
    GetPage().SetShownCallback([this] { ++shownCount; });
    view->resize(800, 600);
    view->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(view.get()));
    view->UpdateView({.cause = ViewUpdate::Cause::ProjectReplaced}, GetProject());
    WaitForPageShown(1);
}

void CPagesWindow::WaitForPageShown(int count)
{
    EXPECT_TRUE(WaitUntil([&] { return shownCount >= count; }));
}

// A script waits for a page that is on its way.
void CPagesWindow::Wait(int before)
{
    Ask(GetPage(), QStringLiteral("1"));
    EXPECT_LE(shownCount, before + 1);
}

void CPagesWindow::Do(const Act& act)
{
    const int before = shownCount;
    desk->Do(act);
    Wait(before);
}

void CPagesWindow::Do(Wish wish, int32_t position)
{
    const int32_t gallery = GetProject().GetCurrentGalleryIndex();
    switch (wish) {
    case Wish::MoveUp:
        return Do(MovePictureUp(gallery, position));
    case Wish::MoveDown:
        return Do(MovePictureDown(gallery, position));
    case Wish::TurnRight:
        return Do(TurnPictures(gallery, {position}, true));
    case Wish::TurnLeft:
        return Do(TurnPictures(gallery, {position}, false));
    case Wish::Remove:
        return Do(RemovePictures(GetProject(), gallery, {position}));
    }
}

void CPagesWindow::Follow(const char* link)
{
    const int before = shownCount;
    view->LoadURL(QString::fromLatin1(link));
    Wait(before);
}

void CPagesWindow::ShowAnew()
{
    const int before = shownCount;
    view->UpdateView({.cause = ViewUpdate::Cause::ProjectReplaced}, GetProject());
    Wait(before);
}

QString CPagesWindow::GetOrder()
{
    QString order;
    const CPictureList& pictures = GetGallery().GetPictures();
    for (int32_t i = 0; i < pictures.GetCount(); ++i) {
        order += ExtractLastName(pictures.GetAt(i)->GetPath()).left(1);
    }
    return order;
}

QStringList Entries(const QMenu& menu)
{
    QStringList entries;
    for (const QAction* action : menu.actions()) {
        entries += (action->isChecked() ? QStringLiteral("*") : QString()) + action->text() +
                   QLatin1Char(' ') + QString::number(action->data().toInt());
    }
    return entries;
}
