#pragma once

#include "DesktopProgram.h"
#include "ViewPage.h"

// The folder view of the running program, as a person sees it.
class CFolderPane {
public:
    explicit CFolderPane(CDesktopProgram& program);

    QVariant Ask(const QString& expression) { return page.Ask(expression); }
    // Until the expression is true in the page on the screen.
    bool WaitFor(const QString& condition) { return page.WaitFor(condition); }
    // Until the list is there and has so many rows that show.
    bool WaitForRows(int count);
    // The heading, without its outer blanks.
    QString GetHeading();
    // The middle of an element, on the screen; the expression gives the element. Scrolls it into view.
    QPoint PlaceOf(const QString& elementExpression) { return page.PlaceOf(elementExpression); }
    // The middle of an element's height, that many pixels from its left side, on the screen; x
    // is an expression.
    QPoint PlaceInRect(const QString& elementExpression, const QString& x);
    // A place in the toolbar, that many pixels from its left side, on the screen.
    QPoint GetToolBarPlace(int x) { return page.ToScreen(QPoint(x, -18)); }
    // The thumbnail of the picture at that place of the folder, from 0.
    static QString Row(int index) { return QStringLiteral("document.getElementById('i%1')").arg(index); }

private:
    CViewPage page;
};

// Makes these the recent folders of a project's file, the first one the chosen one.
void PointToFolder(const QString& project, const QStringList& folders);
