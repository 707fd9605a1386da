#pragma once

#include <QByteArray>
#include <QString>

class CSettingsStore;

// What a view gives to its browser control.
struct HTMLViewOptions {
    CSettingsStore* settings = nullptr; // borrowed; null: the defaults
    QString optionKeyPath;              // branch of the store for the control's own options
    bool allowContextMenu = false;      // the browser's own
};

// Whether a new page stands where the old one was scrolled to.
enum class HTMLScrollPlace { Top, Keep };

// What a view does with a link that was followed in its page. Each view implements it; the host of the page
// only borrows it. Called on the screen's thread.
class CContentURLLoader {
public:
    // The address as the page wrote it, without the page's own address before it and without what
    // stands from "#".
    virtual void LoadURL(const QString& url) = 0;
    // Whether the links of a page still mean what they did. page: the number that CHTMLView::LoadHtml gave
    // it. isCurrent: it is on the screen and no other is on its way.
    virtual bool KnowsLinksOf(int /*page*/, bool isCurrent) const { return isCurrent; }

protected:
    ~CContentURLLoader() = default;
};

// The charset of the pages that name none, by the option Default_CodePage of the view's branch of the
// settings. An option that is not there yet is written: the program's own narrow code page, UTF-8. A number
// that stands for no known code page counts as UTF-8.
QByteArray CharsetOfOption(const HTMLViewOptions& options);
