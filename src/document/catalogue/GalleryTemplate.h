#pragma once

#include <cstdint>
#include <vector>

#include <QString>

class CTemplateObserver;
class CTemplateSection;

// One page of a layout.
struct CGalleryTemplatePage {
    QString file; // relative to the layout's folder
    bool multipage = false;
    int32_t picturesPerPage = 0; // 0 until it was counted
    bool isBeingCounted = false; // a page may ask for its own count while it is counted
    bool addAtFront = false;     // where pictures go that are added while the page is shown
};

// A layout: which page files a gallery has. Read from its definition file once, owned by the catalogue, used
// on the thread that works on the document.
class CGalleryTemplate {
public:
    // Throws CUnexpectedException for a file that is not well-formed, CTemplateParsingException for one
    // without the element "template".
    explicit CGalleryTemplate(const QString& definitionPath);
    virtual ~CGalleryTemplate() = default;
    CGalleryTemplate(const CGalleryTemplate&) = delete;
    CGalleryTemplate& operator=(const CGalleryTemplate&) = delete;

    const std::vector<CGalleryTemplatePage>& GetPages() const { return pages; }
    const QString& GetName() const { return name; }
    // With a trailing separator; empty if the definition names none.
    const QString& GetFolder() const { return folder; }
    const QString& GetGroup() const { return group; }

    // Names of pages compare exactly, case included.
    bool HasPage(const QString& file) const;
    // A name that the layout does not have gives the first page. Throws CGenericException in a layout without
    // pages.
    const CGalleryTemplatePage& GetPage(const QString& file) const;
    CGalleryTemplatePage& GetPage(const QString& file);
    QString GetPageFilePath(const QString& file) const;

    // Parses the page into the tree. Throws CFileException for a file that can't be opened and
    // CTemplateParsingException for a bad page. observer: see ParsePage.
    void LoadPage(const QString& file, CTemplateSection& sectionTree,
                  CTemplateObserver* observer = nullptr) const;

private:
    std::vector<CGalleryTemplatePage> pages;
    QString name;
    QString folder;
    QString group;
};
