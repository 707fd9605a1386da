#include "shell/panes/pages/ViewPages.h"

#include <algorithm>

#include <QMenu>
#include <QPointer>

#include "common/Exceptions.h"
#include "common/Trace.h"
#include "document/project/GalleryProject.h"
#include "editing/LookActs.h"
#include "editing/PictureActs.h"
#include "shell/dialogs/DlgVisibility.h"
#include "shell/panes/pages/PageTexts.h"

namespace {

// Of which ids are still understood. Pages follow each other in a tenth of a second when a button is pressed
// again and again.
constexpr size_t keptPages = 20;

struct PicturePlace {
    int32_t gallery = 0; // index
    int32_t position = 0;
};

// Those whose files are not there, by gallery and position.
std::vector<PicturePlace> FindAbsentPictures(const CGalleryProject& project)
{
    std::vector<PicturePlace> places;
    for (const auto& [index, gallery] : project.GetGalleries()) {
        const int32_t count = gallery ? gallery->GetPictures().GetCount() : 0;
        for (int32_t position = 0; position < count; ++position) {
            if (!gallery->GetPictures().GetAt(position)->IsThere()) {
                places.push_back({.gallery = index, .position = position});
            }
        }
    }
    return places;
}

QString PageOf(const CGallery& gallery)
{
    const CGalleryLayout& layout = gallery.GetLayout();
    return QStringLiteral("%1|%2|%3|%4")
        .arg(gallery.GetIndex())
        .arg(layout.GetTemplateKey(), layout.GetTemplatePage())
        .arg(layout.GetPageNumber());
}

} // namespace

CViewPages::CViewPages(const Services& services, QWidget* parent)
    : CPanel(parent),
      services(services),
      dispatch(*this),
      toolBar(new CViewPagesToolBar({.chooseLayout = [this](int32_t place) { ChooseLayout(place); },
                                     .chooseStyle = [this](int32_t place) { ChooseStyle(place); },
                                     .chooseRecentProject = services.openRecent,
                                     .changeVisibility =
                                         [this] {
                                             ChangeVisibility();
                                         }},
                                    this)),
      htmlView(new CHTMLView(services.browser, this)),
      absentBar(new CAbsentBar({.find = services.findMissing,
                                .show =
                                    [this] {
                                        GoToAbsentPicture();
                                    }},
                               this)),
      selectionBar(new CSelectionBar(*this, [this] { selection.Clear(); })),
      pictureMenu(new QMenu(this)),
      selection(services.desk, *htmlView, *selectionBar),
      dragging(*htmlView,
               {.findPicture = [this](const QString& id) { return shownPage.FindPictureIndex(id); },
                .getPath = [this](int32_t position) { return shownPage.GetPicturePath(position); },
                .getCompany = [this](int32_t position) { return GetCompany(position); },
                .move =
                    [this](const std::vector<int32_t>& from, int32_t before) {
                        Do([&](CGallery& gallery) {
                            return MovePicturesBefore(gallery.GetIndex(), from, before);
                        });
                    },
                .add =
                    [this](const QStringList& paths, int32_t before) {
                        Do([&](CGallery& gallery) {
                            return AddPicturesBefore(gallery.GetIndex(), paths, before);
                        });
                    }})
{
    setObjectName(QStringLiteral("PagesView"));
    SetToolBar(toolBar);
    SetNotice(absentBar);
    pictureMenu->setObjectName(QStringLiteral("PictureMenu"));
    SetClient(htmlView);
    htmlView->SetLoader(this);
    htmlView->SetExternalDispatch(&dispatch);
}

CViewPages::~CViewPages() = default;

bool CViewPages::Do(const std::function<Act(CGallery& gallery)>& make)
{
    CGallery* const gallery = GetProject().GetCurrentGallery();
    return gallery && services.desk.Do(make(*gallery));
}

// --- What the toolbar asks for.

void CViewPages::ChooseLayout(int32_t place)
{
    ChooseLook([place](CGallery& gallery) {
        const CGalleryCatalogue::Templates& layouts = gallery.GetLayout().GetCatalogue().GetTemplates();
        const bool isKnown = place >= 0 && static_cast<size_t>(place) < layouts.size();
        return ::ChooseLayout(gallery.GetIndex(), isKnown ? std::next(layouts.begin(), place)->first
                                                          : gallery.GetLayout().GetTemplateKey());
    });
}

void CViewPages::ChooseStyle(int32_t place)
{
    ChooseLook([place](CGallery& gallery) {
        const std::vector<QString> styles = GetStylesOfCurrentLayout(gallery);
        const bool isKnown = place >= 0 && static_cast<size_t>(place) < styles.size();
        return ::ChooseStyle(gallery.GetIndex(), isKnown ? styles[static_cast<size_t>(place)]
                                                         : gallery.GetLayout().GetStyleKey());
    });
}

void CViewPages::ChooseLook(const std::function<Act(CGallery& gallery)>& make)
{
    try {
        if (!Do(make)) {
            ShowCurrentPage(GetProject()); // a file of the layout may have been mended
        }
    } catch (const CExceptionBase& failure) {
        // The gallery has kept its look; the person is told why.
        Show(BuildFailurePage(failure), QString());
    }
    UpdateMenus(GetProject());
}

void CViewPages::ChangeVisibility()
{
    CGallery* const gallery = GetProject().GetCurrentGallery();
    if (!gallery) {
        return;
    }
    CDlgVisibility dialog(gallery->GetVisibilityMap(), this);
    if (dialog.exec() == QDialog::Accepted) {
        services.desk.Do(ShowElements(gallery->GetIndex(), dialog.GetElements()));
    }
}

// --- Selected pictures.

void CViewPages::SetPictureCommands(const QList<QAction*>& bar, const QList<QAction*>& menu)
{
    selectionBar->SetActions(bar);
    FillMenu(*pictureMenu, menu);
}

void CViewPages::WithPictures(std::function<void(const std::vector<int32_t>& positions)> use)
{
    const std::vector<int32_t> selected = selection.GetPositions();
    if (!selected.empty()) {
        use(selected);
        return;
    }
    // The answer may come when the view is gone.
    htmlView->RunScript(
        QStringLiteral("previewSelection.focused()"),
        [self = QPointer(this), use = std::move(use), page = lastPage](const QVariant& answer) {
            const CGallery* const gallery = self ? self->GetProject().GetCurrentGallery() : nullptr;
            if (gallery) {
                const int32_t position = self->pages[page].FindPosition(*gallery, answer.toString());
                use(position < 0 ? std::vector<int32_t>() : std::vector<int32_t>{position});
            }
        });
}

std::vector<int32_t> CViewPages::GetCompany(int32_t position) const
{
    std::vector<int32_t> selected = selection.GetPositions();
    return std::binary_search(selected.begin(), selected.end(), position) ? selected
                                                                          : std::vector<int32_t>{position};
}

// --- What the page calls.

void CViewPages::ChangeVisibility(const QString&)
{
    ChangeVisibility();
}

void CViewPages::DoWithPicture(const QString& id,
                               const std::function<Act(int32_t gallery, int32_t position)>& make)
{
    const CGallery* const gallery = GetProject().GetCurrentGallery();
    const int32_t position = gallery ? GetCallingPage().FindPosition(*gallery, id) : -1;
    if (position != -1) {
        services.desk.Do(make(gallery->GetIndex(), position));
    }
}

void CViewPages::RotateImageRight(const QString& id)
{
    DoWithPicture(id,
                  [](int32_t gallery, int32_t position) { return TurnPictures(gallery, {position}, true); });
}

void CViewPages::RotateImageLeft(const QString& id)
{
    DoWithPicture(id,
                  [](int32_t gallery, int32_t position) { return TurnPictures(gallery, {position}, false); });
}

void CViewPages::MoveImageUp(const QString& id)
{
    DoWithPicture(id, MovePictureUp);
}

void CViewPages::MoveImageDown(const QString& id)
{
    DoWithPicture(id, MovePictureDown);
}

void CViewPages::DeleteImage(const QString& id)
{
    DoWithPicture(id, [this](int32_t gallery, int32_t position) {
        return RemovePictures(GetProject(), gallery, {position});
    });
}

void CViewPages::DragImage(const QString& id, const QString& look)
{
    if (dispatch.GetCallingPage() != lastPage) {
        return; // its ids may mean something else by now
    }
    dragging.Start(id, look);
}

void CViewPages::FindImage(const QString& id)
{
    if (dispatch.GetCallingPage() != lastPage) {
        return; // its ids may mean something else by now
    }
    const int32_t index = shownPage.FindPictureIndex(id);
    if (index != -1) {
        services.findPicture(shownPage.GetPicturePath(index));
    }
}

const PagePictures& CViewPages::GetCallingPage() const
{
    static const PagePictures none;
    const auto page = pages.find(dispatch.GetCallingPage());
    return page != pages.end() ? page->second : none;
}

void CViewPages::Select(const QString& ids, const QString& way)
{
    selection.Select(GetCallingPage(), ids.split(QLatin1Char('\n'), Qt::SkipEmptyParts), way);
}

void CViewPages::OpenMenu(const QString& id, int32_t x, int32_t y)
{
    if (!id.isEmpty()) {
        selection.Include(GetCallingPage(), id);
    }
    pictureMenu->popup(htmlView->mapToGlobal(QPoint(x, y)));
}

void CViewPages::EditText(const TextToEdit& edited)
{
    if (dispatch.GetCallingPage() != lastPage) {
        return; // its ids may mean something else by now
    }
    const std::vector<TextChange> changes = EditTextOfPage(shownPage, edited, this);
    if (!changes.empty()) {
        Do([&](CGallery& gallery) { return ::EditText(GetProject(), gallery.GetIndex(), changes[0]); });
    }
}

void CViewPages::EditReference(const QString& name, const QString& hrefProperty, const QString& textProperty)
{
    if (dispatch.GetCallingPage() != lastPage) {
        return; // its ids may mean something else by now
    }
    const std::vector<TextChange> changes = EditReferenceOfPage(
        shownPage, {.name = name, .hrefProperty = hrefProperty, .textProperty = textProperty}, this);
    if (!changes.empty()) {
        Do([&](CGallery& gallery) { return EditLink(GetProject(), gallery.GetIndex(), changes); });
    }
}

// Where the person is stands in the project's file, but is no act.
void CViewPages::LoadURL(const QString& url)
{
    CGalleryProject& project = GetProject();
    CGallery* const gallery = project.GetCurrentGallery();
    bool styleChanged = false;
    bool galleryChanged = false;
    if (!gallery || !gallery->FollowLink(url, styleChanged, galleryChanged)) {
        return;
    }
    if (galleryChanged) {
        services.desk.ChooseGallery(project.GetCurrentGalleryIndex());
        return;
    }
    services.desk.MarkChanged();
    if (styleChanged) {
        toolBar->UpdateStyleMenu(gallery);
    }
    ShowCurrentPage(project);
}

void CViewPages::GoToAbsentPicture()
{
    CGalleryProject& project = GetProject();
    const std::vector<PicturePlace> places = FindAbsentPictures(project);
    if (!places.empty()) {
        if (places[0].gallery != project.GetCurrentGalleryIndex()) {
            services.desk.ChooseGallery(places[0].gallery);
        }
        ShowPicture(*project.GetCurrentGallery(), places[0].position);
        services.desk.MarkChanged();
    }
    ShowCurrentPage(project); // it may have come back
    htmlView->RunScript(QStringLiteral("document.querySelector('img[data-absent]')"
                                       "?.scrollIntoView({block:'center',behavior:'instant'})"));
}

// --- The page on the screen.

void CViewPages::UpdateView(const ViewUpdate& update, CGalleryProject& project)
{
    using Cause = ViewUpdate::Cause;
    const TraceScope scope(QStringLiteral("CViewPages::UpdateView"));
    toolBar->SetTitle(project.GetName());
    if (update.cause == Cause::ProjectRenamed) {
        return;
    }
    if (update.cause != Cause::Edited || update.edited->isOtherGallery ||
        update.edited->looks.count(project.GetCurrentGalleryIndex()) != 0) {
        UpdateMenus(project);
    }
    selection.Follow();
    ShowCurrentPage(project);
}

void CViewPages::UpdateMenus(CGalleryProject& project)
{
    toolBar->UpdateLayoutMenu(project.GetCurrentGallery());
    toolBar->UpdateStyleMenu(project.GetCurrentGallery());
}

void CViewPages::ShowCurrentPage(CGalleryProject& project)
{
    CGallery* const gallery = project.GetCurrentGallery();
    absentBar->SetCount(static_cast<int>(FindAbsentPictures(project).size()));
    if (!gallery) {
        shownPage.Clear();
        Show(std::string(), QString());
        return;
    }
    const std::string page = shownPage.Generate(*gallery);
    htmlView->SetShownFolders(FoldersOfPages(*gallery));
    Show(page, PageOf(*gallery)); // asked after the generation, which may go back by a page
}

// The names of the images in a page tell the states of their files.
void CViewPages::LookAtFiles(CGalleryProject& project)
{
    CGallery* const gallery = project.GetCurrentGallery();
    absentBar->SetCount(static_cast<int>(FindAbsentPictures(project).size()));
    if (!gallery || !shownPage.HasNames()) {
        return;
    }
    const std::string page = shownPage.Generate(*gallery);
    if (page != shownBytes) {
        Show(page, PageOf(*gallery));
    }
}

void CViewPages::Show(const std::string& page, const QString& name)
{
    shownBytes = page;
    const bool stays = !name.isEmpty() && name == shownName;
    shownName = name;
    Trace(QStringLiteral("Before_load_HTML"));
    lastPage = htmlView->LoadHtml(page, stays ? CHTMLView::ScrollPlace::Keep : CHTMLView::ScrollPlace::Top);
    pages[lastPage] = shownPage.GetPictures();
    if (pages.size() > keptPages) {
        pages.erase(pages.begin());
    }
    selection.Mark(pages[lastPage]);
    Trace(QStringLiteral("After_load_HTML"));
}
