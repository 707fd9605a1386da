#include "GalleriesPane.h"

CGalleriesPane::CGalleriesPane(CDesktopProgram& program)
    : program(program),
      page(program, QStringLiteral("'AddChildGallery' in window.external"),
           QPoint(program.display.GetSize().width() - 30, 60))
{}

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

QPoint CGalleriesPane::PlaceOf(int gallery)
{
    return page.PlaceFrom(
        QStringLiteral("(r => Math.round(r.x + r.width / 2) + ' ' + Math.round(r.y + r.height / 2))"
                       "(%1.getBoundingClientRect())")
            .arg(Cover(gallery)));
}

void CGalleriesPane::PressButton(int gallery, const QString& tip)
{
    program.Click(page.PointAtStripButton(
        QStringLiteral("[...document.querySelectorAll('img[id=gl_%1_menu]')]").arg(gallery), tip, [&] {
            program.MovePointer(ToScreen(QPoint(3, 3)));
            program.MovePointer(PlaceOf(gallery));
        }));
}
