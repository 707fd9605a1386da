#include "GalleriesPane.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

namespace {

QString InShownPage(const QString& expression)
{
    const QByteArray text = QJsonDocument(QJsonArray{expression}).toJson(QJsonDocument::Compact);
    return QStringLiteral("viewShell.evaluate(%1)").arg(QString::fromUtf8(text.mid(1, text.size() - 2)));
}

} // namespace

bool CGalleriesPane::Connect()
{
    if (probe && probe->IsConnected()) {
        return true;
    }
    for (const QString& address : CPageProbe::ListPages(program.GetDebugPort())) {
        auto candidate = std::make_unique<CPageProbe>(address);
        if (candidate->IsConnected() &&
            candidate->Evaluate(InShownPage(QStringLiteral("'AddChildGallery' in window.external")))
                .toBool()) {
            probe = std::move(candidate);
            return true;
        }
    }
    return false;
}

QVariant CGalleriesPane::Ask(const QString& expression)
{
    return Connect() ? probe->Evaluate(InShownPage(expression)) : QVariant();
}

bool CGalleriesPane::WaitFor(const QString& condition)
{
    const bool holds = CDesktopProgram::WaitFor([&] { return Ask(condition).toBool(); });
    if (!holds) {
        program.TakePicture(QStringLiteral("failed-galleries"));
    }
    return holds;
}

bool CGalleriesPane::WaitForCurrent(int gallery)
{
    return WaitFor(QStringLiteral("(document.querySelector('a[aria-current] img') || {}).id == 'gl_%1' && "
                                  "[...document.images].every(i => i.complete && i.naturalWidth && "
                                  "!i.src.startsWith('data:'))")
                       .arg(gallery));
}

QStringList CGalleriesPane::GetNames()
{
    return Ask(QStringLiteral("[...document.querySelectorAll('a > img')].map(i => i.title).join('|')"))
        .toString()
        .split(QLatin1Char('|'));
}

// Where the page's own corner is on the screen: found by the mouse, as a script sees it.
QPoint CGalleriesPane::GetOrigin()
{
    if (!origin.isNull()) {
        return origin;
    }
    Ask(QStringLiteral(
        "document.addEventListener('mousemove', e => { window.origin_ = (e.screenX - e.clientX) "
        "+ ' ' + (e.screenY - e.clientY); }, true); window.origin_ = ''"));
    const QSize screen = program.display.GetSize();
    int step = 0;
    CDesktopProgram::WaitFor([&] {
        program.MovePointer(QPoint(screen.width() - 30 - ++step % 2, 60));
        return !Ask(QStringLiteral("window.origin_")).toString().isEmpty();
    });
    const QStringList place = Ask(QStringLiteral("window.origin_")).toString().split(QLatin1Char(' '));
    origin = QPoint(place.value(0).toInt(), place.value(1).toInt());
    return origin;
}

QPoint CGalleriesPane::PlaceOf(int gallery)
{
    const QStringList place =
        Ask(QStringLiteral("(r => Math.round(r.x + r.width / 2) + ' ' + Math.round(r.y + r.height / 2))"
                           "(%1.getBoundingClientRect())")
                .arg(Cover(gallery)))
            .toString()
            .split(QLatin1Char(' '));
    EXPECT_EQ(place.size(), 2) << "There is no cover of gallery " << gallery;
    return ToScreen(QPoint(place.value(0).toInt(), place.value(1).toInt()));
}

void CGalleriesPane::PressButton(int gallery, const QString& tip)
{
    const QString strips =
        QStringLiteral("[...document.querySelectorAll('img[id=gl_%1_menu]')]").arg(gallery);
    const QString shown = QStringLiteral("(%1.find(s => s.style.display == 'inline') || null)").arg(strips);
    program.MovePointer(ToScreen(QPoint(3, 3)));
    program.MovePointer(PlaceOf(gallery));
    ASSERT_TRUE(WaitFor(shown + QStringLiteral(" != null"))) << gallery;
    const QStringList place =
        Ask(QStringLiteral("(r => Math.round(r.x + 24 * %1.findIndex(i => i.alt == '%2') - 12) + ' ' + "
                           "Math.round(r.y + 12))(%3.getBoundingClientRect())")
                .arg(strips, tip, shown))
            .toString()
            .split(QLatin1Char(' '));
    ASSERT_EQ(place.size(), 2) << qPrintable(tip);
    const QPoint button = ToScreen(QPoint(place[0].toInt(), place[1].toInt()));
    program.MovePointer(button);
    ASSERT_TRUE(WaitFor(QStringLiteral("(%1 || {}).alt == '%2'").arg(shown, tip))) << qPrintable(tip);
    program.Click(button);
}
