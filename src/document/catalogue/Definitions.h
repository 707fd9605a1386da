#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <QString>

#include "common/NamedFile.h"

class CTemplateSection;
struct PageReading;

// One page of a layout.
struct CGalleryTemplatePage {
    QString file; // relative to the layout's folder
    bool multipage = false;
    bool addAtFront = false; // where pictures go that are added while the page is shown

    // What follows from the page's file and costs a look into it; kept by CGallery::GetPicturesPerPage.
    mutable int32_t picturesPerPage = 0; // 0 until it was counted
    mutable bool isBeingCounted = false; // a page may ask for its own count while it is counted
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
    // A name that the layout does not have gives the first page. Throws CGenericException if the layout has
    // no pages.
    const CGalleryTemplatePage& GetPage(const QString& file) const;
    QString GetPageFilePath(const QString& file) const;

    // Parses the page into the tree. It may include what lies below the folder of the definition. Throws
    // CFileException for a file that can't be opened or lies elsewhere, and CTemplateParsingException for a
    // bad page.
    void LoadPage(const QString& file, CTemplateSection& sectionTree) const;
    // reading: its folder is not looked at.
    void LoadPage(const QString& file, CTemplateSection& sectionTree, PageReading reading) const;
    // The file of a page, as its folder has it.
    NamedFile FindPageFile(const QString& file) const;
    // Where the definition lies, without a trailing separator.
    const QString& GetDefinitionFolder() const { return definitionFolder; }
    // The folder as the definition names it, found below the definition.
    const NamedFile& GetNamedFolder() const { return namedFolder; }

private:
    std::vector<CGalleryTemplatePage> pages;
    QString name;
    QString definitionFolder;
    NamedFile namedFolder;
    QString folder;
    QString group;
};

// A style: how the pages of a layout look. A plain record, read from its definition file once.
struct CGalleryStyle {
    CGalleryStyle() = default;
    // Throws CUnexpectedException for a file that is not well-formed, CTemplateParsingException for one
    // without the element "style".
    explicit CGalleryStyle(const QString& definitionPath);

    QString css;    // file name of the style sheet
    QString folder; // as written in the definition; the name of the copy beside published pages
    // Full path of that folder, without a trailing separator. Empty if the definition names none below its
    // own folder.
    QString directory;
    NamedFile namedFolder; // what has been found of it
    NamedFile sheet;       // the style sheet in it
    QString name;
    QString group;
    bool isDefault = false; // the style that a new gallery takes
};

// Calls onFile with the full path of each definition file of a folder: each file named "*.xml", without
// regard to case, in name order. Hidden files and folders are passed over; a missing folder has no files.
// Throws CUnexpectedException for a full path of more than 1024 characters.
void ScanFolder(const QString& folder, const std::function<void(const QString& fullPath)>& onFile);

// The folder of a file, absolute and with a trailing separator, also for a bare file name.
QString AbsoluteFolderOf(const QString& path);
