#pragma once

#include "DesktopProgram.h"
#include "ViewPage.h"

// The galleries view of the running program, as a person sees it. A gallery is named by its index.
class CGalleriesPane {
public:
    explicit CGalleriesPane(CDesktopProgram& program);

    QVariant Ask(const QString& expression) { return page.Ask(expression); }
    // Until the expression is true in the page on the screen.
    bool WaitFor(const QString& condition) { return page.WaitFor(condition); }
    // Until the page shows the neighbourhood of that gallery with all its pictures.
    bool WaitForCurrent(int gallery);
    bool WaitForCover(int gallery) { return WaitFor(Cover(gallery) + QStringLiteral(" != null")); }
    // The names of the galleries that show, from the top.
    QStringList GetNames();

    // The middle of a cover, on the screen.
    QPoint PlaceOf(int gallery);
    // A place of the page, on the screen.
    QPoint ToScreen(QPoint place) { return page.ToScreen(place); }
    // Points at the cover and presses a button of the strip that comes up, by its tooltip.
    void PressButton(int gallery, const QString& tip);

    static QString Cover(int gallery)
    {
        return QStringLiteral("document.querySelector('img[id=gl_%1]')").arg(gallery);
    }

private:
    CDesktopProgram& program;
    CViewPage page;
};
