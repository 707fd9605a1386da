// Draws an SVG file as a square PNG file: render_icon DRAWING.svg SIZE ICON.png. Runs when the package is
// built.

#include <cstdio>

#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    const QStringList words = QCoreApplication::arguments();
    const int size = words.value(2).toInt();
    QSvgRenderer drawing(words.value(1));
    if (words.size() != 4 || size <= 0 || !drawing.isValid()) {
        std::fputs("Usage: render_icon DRAWING.svg SIZE ICON.png\n", stderr);
        return EXIT_FAILURE;
    }
    QImage icon(size, size, QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    drawing.render(&painter);
    painter.end();
    if (!icon.save(words[3], "PNG")) {
        std::fprintf(stderr, "%s could not be written.\n", arguments[3]);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
