#pragma once

#include <map>

#include <QString>

#include "document/catalogue/Definitions.h"

// The layouts and styles that a project can choose from. Keys are lower-cased full paths of definition files,
// so two files of one name in two folders lie side by side. Owned by the project; its galleries keep
// positions in the two maps.
class CGalleryCatalogue {
public:
    using Templates = std::map<QString, CGalleryTemplate>;
    using Styles = std::map<QString, CGalleryStyle>;

    // programFolder: holds the folders Templates and Styles.
    explicit CGalleryCatalogue(const QString& programFolder) : programFolder(programFolder) {}
    CGalleryCatalogue(const CGalleryCatalogue&) = delete;
    CGalleryCatalogue& operator=(const CGalleryCatalogue&) = delete;

    // The definitions beside the program; with a project's path first those beside the project. A definition
    // that is here already is not read again. Throw what the constructors of CGalleryTemplate and
    // CGalleryStyle throw: one bad definition ends the loading.
    void LoadTemplates();
    void LoadTemplates(const QString& projectPath);
    void LoadStyles();
    void LoadStyles(const QString& projectPath);
    // No gallery may hold a position when this is called.
    void Clear();

    const Templates& GetTemplates() const { return templates; }
    const Styles& GetStyles() const { return styles; }

    // The layout of that key, else the first one. Throws CUnexpectedException if there is none at all.
    const CGalleryTemplate& FindTemplate(const QString& key) const;

    // By exact key; else the first whose definition has the same file name, without regard to case; else the
    // first. The end only if there are none.
    Templates::const_iterator ChooseTemplate(const QString& path) const;
    Styles::const_iterator ChooseStyle(const QString& path) const;
    // Likewise, but the end if there is none of that file name either.
    Styles::const_iterator FindStyle(const QString& path) const;
    // The first style that is marked as default, else the first.
    Styles::const_iterator ChooseDefaultStyle() const;

private:
    const QString programFolder;
    Templates templates;
    Styles styles;
};
