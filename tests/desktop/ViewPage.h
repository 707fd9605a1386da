#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QPoint>
#include <QString>
#include <QVariant>

#include "PageProbe.h"

class CDesktopProgram;

// The page of a view of the running program, as a person sees it. It is found again when the program has
// started anew.
class CViewPage {
public:
    // sign: an expression that is true in the pages of this view alone. rest: a place on the screen that is
    // inside the view and where the mouse may come.
    CViewPage(CDesktopProgram& program, const QString& sign, QPoint rest);

    // The value of the expression in the page on the screen; invalid while there is none.
    QVariant Ask(const QString& expression);
    // Until the expression is true in the page on the screen.
    bool WaitFor(const QString& condition);

    // A place of the page, on the screen.
    QPoint ToScreen(QPoint place);
    // The middle of an element, on the screen; the expression gives the element. Scrolls it into view.
    QPoint PlaceOf(const QString& elementExpression);
    // The place that an expression gives as a text of two numbers, on the screen.
    QPoint PlaceFrom(const QString& expression);
    // Points at an element, then at a button of the strip that comes up, by its tooltip, and returns its
    // place. A strip is several images: at rest, then one for each button lit, with the button's tooltip.
    // strips: an expression for the list of them.
    QPoint PointAtStripButton(const QString& strips, const QString& tip,
                              const std::function<void()>& pointAtElement);

private:
    std::optional<QPoint> TryPlace(const QString& expression);
    bool Connect();
    QPoint FindOrigin();

    CDesktopProgram& program;
    const QString sign;
    const QPoint rest;
    std::unique_ptr<CPageProbe> probe;
    quint16 port = 0;
    QPoint origin; // of the page, on the screen; null until it was found
};
