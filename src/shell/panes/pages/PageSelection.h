#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "shell/panes/PictureSelection.h"
#include "shell/panes/pages/ShownPage.h"

class CDocumentDesk;
class CHTMLView;
class CSelectionBar;

// Which pictures of the current gallery are selected, on whichever of its pages they stand: marks them on the
// page, says how many there are, and follows the document. Owned by the pages view; screen's thread.
class CPageSelection final {
public:
    using Positions = std::vector<int32_t>; // in the current gallery, ascending

    // All are borrowed.
    CPageSelection(CDocumentDesk& desk, CHTMLView& view, CSelectionBar& bar);

    // What a page asks for, by the ids of its pictures. way: "only", "toggle" or "range" for one that was
    // clicked; "these" or "more" for several; other words do nothing.
    void Select(const PagePictures& page, const QStringList& ids, const QString& way);
    // The picture alone, unless it is one of those that are selected.
    void Include(const PagePictures& page, const QString& id);
    void SelectAll();
    void Clear();

    // The document has changed, or another gallery has become the current one: nothing of that one is
    // selected.
    void Follow();
    // A new page is on its way to the view.
    void Mark(const PagePictures& page);

    bool Has(const PagePictures& page, const QString& id) const { return selection.Has(page.FindKey(id)); }
    Positions GetPositions() const;

private:
    QStringList ListKeys() const;
    void Update();
    QString MarksScript() const;

    CDocumentDesk& desk;
    CHTMLView& view;
    CSelectionBar& bar;
    CPictureSelection selection;
    int32_t gallery = -1; // index, to which the selection belongs
    PagePictures shown;
};
