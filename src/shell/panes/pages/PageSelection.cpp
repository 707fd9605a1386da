#include "shell/panes/pages/PageSelection.h"

#include "document/project/GalleryProject.h"
#include "shell/panes/DocumentDesk.h"
#include "shell/panes/SelectionBar.h"
#include "shell/panes/SelectionScript.h"
#include "shell/web/HTMLView.h"

CPageSelection::CPageSelection(CDocumentDesk& desk, CHTMLView& view, CSelectionBar& bar)
    : desk(desk), view(view), bar(bar)
{}

void CPageSelection::Select(const PagePictures& page, const QStringList& ids, const QString& way)
{
    QStringList keys;
    for (const QString& id : ids) {
        if (const QString key = page.FindKey(id); !key.isEmpty()) {
            keys += key;
        }
    }
    if (page.gallery == gallery && ApplySelection(selection, keys, way, ListKeys())) {
        Update();
    }
}

void CPageSelection::Include(const PagePictures& page, const QString& id)
{
    if (!Has(page, id)) {
        Select(page, {id}, QStringLiteral("only"));
    }
}

void CPageSelection::SelectAll()
{
    selection.Select(ListKeys(), false);
    Update();
}

void CPageSelection::Clear()
{
    selection.Clear();
    Update();
}

void CPageSelection::Follow()
{
    const int32_t current = desk.GetProject().GetCurrentGalleryIndex();
    if (current != gallery) {
        selection.Clear();
        gallery = current;
    }
    selection.Keep(ListKeys());
    bar.SetCount(selection.GetCount());
}

void CPageSelection::Mark(const PagePictures& page)
{
    shown = page;
    // In one: who sees the script in a page sees the marks.
    view.RunScript(SelectionScript({.clicksSelect = false}) + QLatin1Char('\n') + MarksScript());
    bar.SetCount(selection.GetCount());
}

CPageSelection::Positions CPageSelection::GetPositions() const
{
    Positions positions;
    const QStringList keys = selection.IsEmpty() ? QStringList() : ListKeys();
    for (qsizetype position = 0; position < keys.size(); ++position) {
        if (selection.Has(keys[position])) {
            positions.push_back(static_cast<int32_t>(position));
        }
    }
    return positions;
}

QStringList CPageSelection::ListKeys() const
{
    const CGallery* const current = desk.GetProject().GetCurrentGallery();
    return current ? KeysOf(*current) : QStringList();
}

void CPageSelection::Update()
{
    view.RunScript(MarksScript());
    bar.SetCount(selection.GetCount());
}

QString CPageSelection::MarksScript() const
{
    QStringList ids;
    for (const auto& [id, key] : shown.keys) {
        if (selection.Has(key)) {
            ids += id;
        }
    }
    return MarkScript(ids);
}
