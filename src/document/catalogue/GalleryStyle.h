#pragma once

#include <QString>

// A style: how the pages of a layout look. A plain record, read from its definition file once.
struct CGalleryStyle {
    CGalleryStyle() = default;
    // Throws CUnexpectedException for a file that is not well-formed, CTemplateParsingException for one
    // without the element "style".
    explicit CGalleryStyle(const QString& definitionPath);

    QString css;       // file name of the style sheet
    QString folder;    // as written in the definition; the name of the copy beside published pages
    QString directory; // full path of that folder, without a trailing separator
    QString name;
    QString group;
    bool isDefault = false; // the style that a new gallery takes
};
