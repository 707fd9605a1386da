#include "ViewPage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

#include "DesktopProgram.h"

namespace {

// The pages of a view stand one at a time in a frame of the view's own page; this runs in the one that is on
// the screen.
QString InShownPage(const QString& expression)
{
    const QByteArray text = QJsonDocument(QJsonArray{expression}).toJson(QJsonDocument::Compact);
    return QStringLiteral("viewShell.evaluate(%1)").arg(QString::fromUtf8(text.mid(1, text.size() - 2)));
}

// Between what the mouse does and what the page shows of it.
constexpr int timeOfAPage = 2'000; // milliseconds

} // namespace

CViewPage::CViewPage(CDesktopProgram& program, const QString& sign, QPoint rest)
    : program(program), sign(sign), rest(rest)
{}

bool CViewPage::Connect()
{
    if (port != program.GetDebugPort()) {
        port = program.GetDebugPort();
        probe.reset();
        origin = QPoint();
    }
    if (probe && probe->IsConnected()) {
        return true;
    }
    for (const QString& address : CPageProbe::ListPages(port)) {
        auto candidate = std::make_unique<CPageProbe>(address);
        if (candidate->IsConnected() && candidate->Evaluate(InShownPage(sign)).toBool()) {
            probe = std::move(candidate);
            return true;
        }
    }
    return false;
}

QVariant CViewPage::Ask(const QString& expression)
{
    return Connect() ? probe->Evaluate(InShownPage(expression)) : QVariant();
}

bool CViewPage::WaitFor(const QString& condition)
{
    const bool holds = CDesktopProgram::WaitFor([&] { return Ask(condition).toBool(); });
    if (!holds) {
        program.TakePicture(QStringLiteral("failed"));
    }
    return holds;
}

// Where the page's own corner is on the screen: found by the mouse, as a script sees it. A page that takes
// the place of another while it is sought does not listen yet.
QPoint CViewPage::FindOrigin()
{
    const QString heard = QStringLiteral(
        "'origin_' in window || (window.origin_ = '', document.addEventListener('mousemove', e => { "
        "window.origin_ = (e.screenX - e.clientX) + ' ' + (e.screenY - e.clientY); }, true)), "
        "window.origin_");
    int step = 0;
    QStringList place;
    EXPECT_TRUE(CDesktopProgram::WaitFor([&] {
        program.MovePointer(rest + QPoint(++step % 2, 0));
        place = Ask(heard).toString().split(QLatin1Char(' '));
        return place.size() == 2;
    }));
    return QPoint(place.value(0).toInt(), place.value(1).toInt());
}

QPoint CViewPage::ToScreen(QPoint place)
{
    Connect();
    if (origin.isNull()) {
        origin = FindOrigin();
    }
    return origin + place;
}

// A page that takes the place of another meanwhile has no places yet.
QPoint CViewPage::PlaceFrom(const QString& expression)
{
    std::optional<QPoint> place;
    EXPECT_TRUE(CDesktopProgram::WaitFor([&] {
        place = TryPlace(expression);
        return place.has_value();
    })) << "There is no place "
        << qPrintable(expression);
    return place.value_or(QPoint());
}

std::optional<QPoint> CViewPage::TryPlace(const QString& expression)
{
    const QStringList place = Ask(expression).toString().split(QLatin1Char(' '));
    return place.size() == 2 ? std::optional(ToScreen(QPoint(place[0].toInt(), place[1].toInt())))
                             : std::nullopt;
}

QPoint CViewPage::PlaceOf(const QString& elementExpression)
{
    return PlaceFrom(
        QStringLiteral("(e => { if (!e) return ''; e.scrollIntoView({block: 'center', behavior: 'instant'}); "
                       "const r = e.getBoundingClientRect(); "
                       "return Math.round(r.x + r.width / 2) + ' ' + Math.round(r.y + r.height / 2); })(%1)")
            .arg(elementExpression));
}

// A page that takes the place of another meanwhile does not know where the mouse is, and is told anew.
QPoint CViewPage::PointAtStripButton(const QString& strips, const QString& tip,
                                     const std::function<void()>& pointAtElement)
{
    const QString shown = QStringLiteral("(%1.find(s => s.style.display == 'inline') || null)").arg(strips);
    const QString place =
        QStringLiteral("(r => Math.round(r.x + 24 * %1.findIndex(i => i.alt == '%2') - 12) + ' ' + "
                       "Math.round(r.y + 12))(%3.getBoundingClientRect())")
            .arg(strips, tip, shown);
    const auto becomesTrue = [this](const QString& condition) {
        return CDesktopProgram::WaitFor([&] { return Ask(condition).toBool(); }, timeOfAPage);
    };
    std::optional<QPoint> button;
    EXPECT_TRUE(CDesktopProgram::WaitFor([&] {
        pointAtElement();
        button = becomesTrue(shown + QStringLiteral(" != null")) ? TryPlace(place) : std::nullopt;
        if (!button) {
            return false;
        }
        program.MovePointer(*button);
        return becomesTrue(QStringLiteral("(%1 || {}).alt == '%2'").arg(shown, tip));
    })) << qPrintable(tip)
        << " of " << qPrintable(strips);
    return button.value_or(QPoint());
}
