#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <QString>

#include "document/catalogue/GalleryCatalogue.h"

// What a gallery looks like: its layout, the page of it that is shown, its style, and the styles chosen for
// single pages. A value that its gallery owns; the catalogue is borrowed.
class CGalleryLayout {
public:
    // Starts on the first layout, with no page, and on the default style.
    explicit CGalleryLayout(const CGalleryCatalogue& catalogue);

    const CGalleryCatalogue& GetCatalogue() const { return *catalogue; }

    // Null if there are no layouts. The key is empty then.
    const CGalleryTemplate* GetTemplate() const;
    QString GetTemplateKey() const;
    // Null if there are no styles. The key is empty then.
    const CGalleryStyle* GetStyle() const;
    QString GetStyleKey() const;
    // The style chosen for that page, by its key or by its file name, else the gallery's style.
    const CGalleryStyle* GetStyleOfPage(const QString& pageBaseName) const;

    // The current page: its file name, cut at its first ".". All empty before a page was chosen.
    const QString& GetTemplatePage() const { return templatePage; }
    const QString& GetPageBaseName() const { return pageBaseName; }
    const QString& GetPageExtension() const { return pageExtension; }

    // The page of a multipage set that the preview shows.
    int32_t GetPageNumber() const { return pageNumber; }
    void SetPageNumber(int32_t page) { pageNumber = page; }

    // By the base name of a page, the key of its style.
    const std::map<QString, QString>& GetPageStyles() const { return pageStyles; }
    void SetPageStyle(const QString& baseName, const QString& styleKey) { pageStyles[baseName] = styleKey; }

    // False, and nothing changed, if there are no layouts. Keeps the page if the new layout has one of its
    // name, else goes to the new layout's first page. The page number stays.
    bool ChooseTemplate(const QString& path);
    // False if it is the page already. Throws CTemplateParsingException for a name without ".".
    bool SetTemplatePage(const QString& name);
    // Back to a name that GetTemplatePage gave, the empty one of no page included. Never throws.
    void RestoreTemplatePage(const QString& name);
    // The style becomes that of the gallery and of the current page.
    void SetStyle(const QString& path);
    // The gallery's style becomes the one that was chosen for a page; nothing is chosen anew. Nothing happens
    // if it isn't installed.
    void ShowStyle(const QString& key);

    // To be called after ChooseTemplate and SetStyle with a key that was read from a project's file: a layout
    // or style that isn't installed just now stays the one that is written, until another is chosen.
    void KeepTemplateKey(const QString& key);
    void KeepStyleKey(const QString& key);
    QString GetWrittenTemplateKey() const;
    QString GetWrittenStyleKey() const;

    // Whether what is added while the current page is shown goes to the front of the gallery.
    bool IsAddedAtFront() const;

    // The folders of all styles in use: those of single pages, then the gallery's. One may stand there twice.
    std::vector<QString> GetStyleDirectories() const;

    bool operator==(const CGalleryLayout&) const = default;

private:
    const CGalleryCatalogue* catalogue;
    CGalleryCatalogue::Templates::const_iterator currentTemplate; // the end if there are no layouts
    CGalleryCatalogue::Styles::const_iterator currentStyle;       // the end if there are no styles
    QString keptTemplateKey; // that is written instead of the layout's own; empty for none
    QString keptStyleKey;
    QString pageBaseName;
    QString pageExtension;
    QString templatePage;
    int32_t pageNumber = 0;
    std::map<QString, QString> pageStyles;
};
