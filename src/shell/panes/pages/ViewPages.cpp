#include "shell/panes/pages/ViewPages.h"

#include <algorithm>

#include "common/Exceptions.h"
#include "common/Trace.h"
#include "document/project/GalleryProject.h"
#include "shell/dialogs/DlgVisibility.h"
#include "shell/panes/pages/PageTexts.h"

namespace {

int32_t PositionOf(const UpdateParameter& parameter)
{
    const int32_t* const position = std::get_if<int32_t>(&parameter);
    return position ? *position : -1;
}

// Two positions: from and to.
const std::vector<int32_t>* WayOf(const UpdateParameter& parameter)
{
    const auto* const way = std::get_if<std::vector<int32_t>>(&parameter);
    return way && way->size() == 2 ? way : nullptr;
}

QString TextOf(const UpdateParameter& parameter)
{
    const QString* const text = std::get_if<QString>(&parameter);
    return text ? *text : QString();
}

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
      notifier(ViewId::Pages, services.notify),
      dispatch(*this),
      toolBar(new CViewPagesToolBar(
          {.chooseLayout = [this](int32_t place) { ChooseLayout(place); },
           .chooseStyle = [this](int32_t place) { ChooseStyle(place); },
           .chooseRecentProject =
               [this](int32_t place) { notifier.Send(UpdateHint::RecentProjectChosen, place); },
           .changeVisibility =
               [this] {
                   ChangeVisibility();
               }},
          this)),
      htmlView(new CHTMLView(services.browser, this)),
      absentBar(new CAbsentBar({.find = services.findMissing,
                                .show =
                                    [this] {
                                        notifier.Send(UpdateHint::AbsentPictureWanted);
                                    }},
                               this)),
      dragging(*htmlView,
               {.findPicture = [this](const QString& id) { return shownPage.FindPictureIndex(id); },
                .getPath = [this](int32_t position) { return shownPage.GetPicturePath(position); },
                .move = [this](int32_t from, int32_t before) { MoveImage(from, before); },
                .addFromFolder = services.addFromFolder})
{
    setObjectName(QStringLiteral("PagesView"));
    SetToolBar(toolBar);
    SetNotice(absentBar);
    SetClient(htmlView);
    htmlView->SetLoader(this);
    htmlView->SetExternalDispatch(&dispatch);
}

CViewPages::~CViewPages() = default;

void CViewPages::ChooseLayout(int32_t place)
{
    notifier.Send(UpdateHint::LayoutChosen, place);
}

void CViewPages::ChooseStyle(int32_t place)
{
    notifier.Send(UpdateHint::StyleChosen, place);
}

void CViewPages::ChangeVisibility()
{
    notifier.Send(UpdateHint::VisibilityChosen);
}

// --- What the page calls.

void CViewPages::ChangeVisibility(const QString&)
{
    ChangeVisibility();
}

void CViewPages::RotateImageRight(const QString& id)
{
    SendForPicture(UpdateHint::PictureTurnedRight, id);
}

void CViewPages::RotateImageLeft(const QString& id)
{
    SendForPicture(UpdateHint::PictureTurnedLeft, id);
}

void CViewPages::MoveImageUp(const QString& id)
{
    SendForPicture(UpdateHint::PictureMovedUp, id);
}

void CViewPages::MoveImageDown(const QString& id)
{
    SendForPicture(UpdateHint::PictureMovedDown, id);
}

void CViewPages::DeleteImage(const QString& id)
{
    SendForPicture(UpdateHint::PictureRemoved, id);
}

void CViewPages::DragImage(const QString& id, const QString& look)
{
    dragging.Start(id, look);
}

void CViewPages::FindImage(const QString& id)
{
    const int32_t index = shownPage.FindPictureIndex(id);
    if (index != -1) {
        services.findPicture(shownPage.GetPicturePath(index));
    }
}

void CViewPages::MoveImage(int32_t from, int32_t before)
{
    const int32_t to = before > from ? before - 1 : before;
    if (to != from) {
        notifier.Send(to < from ? UpdateHint::PictureMovedUp : UpdateHint::PictureMovedDown,
                      std::vector<int32_t>{from, to});
    }
}

void CViewPages::SendForPicture(UpdateHint hint, const QString& id)
{
    const int32_t index = shownPage.FindPictureIndex(id);
    if (index != -1) {
        notifier.Send(hint, index);
    }
}

void CViewPages::EditText(const TextToEdit& edited)
{
    if (EditTextOfPage(shownPage, edited, this)) {
        notifier.Send(UpdateHint::TextEdited);
    }
}

void CViewPages::EditReference(const QString& name, const QString& hrefProperty, const QString& textProperty)
{
    if (EditReferenceOfPage(
            shownPage, {.name = name, .hrefProperty = hrefProperty, .textProperty = textProperty}, this)) {
        notifier.Send(UpdateHint::TextEdited);
    }
}

void CViewPages::LoadURL(const QString& url)
{
    notifier.Send(UpdateHint::LinkFollowed, url);
}

// --- Changes of the document.

void CViewPages::UpdateProject(UpdateHint hint, const UpdateParameter& parameter, CGalleryProject& project)
{
    const TraceScope scope(QStringLiteral("CViewPages::UpdateProject"));
    if (hint == UpdateHint::Deploy && services.deploy) {
        services.deploy(project);
    }
    Change change{.hint = hint};
    try {
        if (!Apply(change, parameter, project)) {
            return;
        }
        CGallery* const gallery = project.GetCurrentGallery();
        if (gallery && change.positionToShow != -1) {
            gallery->SetCurrentPicture(change.positionToShow);
        }
    } catch (const CExceptionBase& failure) {
        // A layout's file has gone meanwhile. What was changed before that is changed, and the page, made
        // anew, says what is wrong.
        Trace(failure.GetDescription());
    }
    if (change.changed) {
        UpdateView(change.hint, project);
    }
    if (hint == UpdateHint::AbsentPictureWanted) {
        htmlView->RunScript(QStringLiteral("document.querySelector('img[data-absent]')"
                                           "?.scrollIntoView({block:'center',behavior:'instant'})"));
    }
    CGalleryProjectConsumer::UpdateProject(change.hint, parameter, project);
    if (change.rebuild) {
        notifier.Send(UpdateHint::CoverChanged);
    }
}

bool CViewPages::Apply(Change& change, const UpdateParameter& parameter, CGalleryProject& project)
{
    CGallery* const gallery = project.GetCurrentGallery();
    if (!gallery) {
        return true;
    }
    switch (change.hint) {
    case UpdateHint::StyleChosen:
    case UpdateHint::LayoutChosen:
        ApplyChoice(change, PositionOf(parameter), *gallery);
        return true;
    case UpdateHint::PictureMovedUp:
    case UpdateHint::PictureMovedDown:
        if (const std::vector<int32_t>* const way = WayOf(parameter)) {
            MoveAlong(change, *way, *gallery);
            return true;
        }
        [[fallthrough]];
    case UpdateHint::PictureTurnedLeft:
    case UpdateHint::PictureTurnedRight:
    case UpdateHint::PictureRemoved:
        ApplyToPicture(change, PositionOf(parameter), *gallery);
        return true;
    case UpdateHint::LinkFollowed:
        FollowLink(change, TextOf(parameter), *gallery);
        return true;
    case UpdateHint::AbsentPictureWanted:
        GoToAbsentPicture(change, project);
        return true;
    case UpdateHint::VisibilityChosen:
        return ChooseVisibility(*gallery);
    default:
        return true;
    }
}

void CViewPages::ApplyChoice(Change& change, int32_t place, CGallery& gallery)
{
    try {
        if (change.hint == UpdateHint::StyleChosen) {
            const std::vector<QString> styles = GetStylesOfCurrentLayout(gallery);
            if (place >= 0 && static_cast<size_t>(place) < styles.size()) {
                gallery.SetStyle(styles[static_cast<size_t>(place)]);
            }
        } else {
            const CGalleryCatalogue::Templates& layouts = gallery.GetLayout().GetCatalogue().GetTemplates();
            if (place >= 0 && static_cast<size_t>(place) < layouts.size()) {
                gallery.SetTemplate(std::next(layouts.begin(), place)->first);
            }
        }
    } catch (const CExceptionBase& failure) {
        // The gallery has kept its layout; the person is told why.
        change.changed = false;
        Show(BuildFailurePage(failure), QString());
    }
    toolBar->UpdateLayoutMenu(&gallery);
    toolBar->UpdateStyleMenu(&gallery);
}

void CViewPages::ApplyToPicture(Change& change, int32_t position, CGallery& gallery)
{
    const int32_t count = gallery.GetPictures().GetCount();
    if (position < 0 || position >= count) {
        change.changed = false;
        return;
    }
    const bool isFirst = position == 0;
    const bool isLast = position == count - 1;
    int32_t other = position;
    switch (change.hint) {
    case UpdateHint::PictureMovedUp:
        other = (isFirst ? count : position) - 1;
        change.positionToShow = std::min(position, other);
        break;
    case UpdateHint::PictureMovedDown:
        other = isLast ? 0 : position + 1;
        change.positionToShow = std::max(position, other);
        break;
    case UpdateHint::PictureRemoved:
        gallery.RemovePicture(position);
        change.positionToShow = count > 1 ? position : -1;
        break;
    default:
        gallery.RotatePicture(position, change.hint == UpdateHint::PictureTurnedRight);
        change.positionToShow = position;
        break;
    }
    if (other != position) {
        gallery.MovePicture(position, other);
    }
    change.rebuild = std::min(position, other) < CGalleryCover::PictureCount;
}

// What moving up or down does, as often as it takes.
void CViewPages::MoveAlong(Change& change, const std::vector<int32_t>& way, CGallery& gallery)
{
    const int32_t count = gallery.GetPictures().GetCount();
    const int32_t from = way[0];
    const int32_t to = way[1];
    if (std::min(from, to) < 0 || std::max(from, to) >= count || from == to) {
        change.changed = false;
        return;
    }
    const int32_t step = to > from ? 1 : -1;
    for (int32_t position = from; position != to; position += step) {
        gallery.MovePicture(position, position + step);
    }
    change.positionToShow = to;
    change.rebuild = std::min(from, to) < CGalleryCover::PictureCount;
}

void CViewPages::GoToAbsentPicture(Change& change, CGalleryProject& project)
{
    const std::vector<PicturePlace> places = FindAbsentPictures(project);
    if (places.empty()) {
        return; // it has come back
    }
    if (places[0].gallery != project.GetCurrentGalleryIndex()) {
        project.SetCurrentGallery(places[0].gallery);
        change.hint = UpdateHint::GalleryChosen;
    }
    change.positionToShow = places[0].position;
}

void CViewPages::FollowLink(Change& change, const QString& url, CGallery& gallery)
{
    bool styleChanged = false;
    bool galleryChanged = false;
    change.changed = gallery.FollowLink(url, styleChanged, galleryChanged);
    if (galleryChanged) {
        // The other views have to know as well, as if the gallery had been chosen in one of them.
        change.hint = UpdateHint::GalleryChosen;
        change.rebuild = true;
    } else if (styleChanged) {
        toolBar->UpdateStyleMenu(&gallery);
    }
}

bool CViewPages::ChooseVisibility(CGallery& gallery)
{
    CDlgVisibility dialog(gallery.GetVisibilityMap(), this);
    if (dialog.exec() != QDialog::Accepted) {
        return false;
    }
    gallery.SetVisibilityMap(dialog.GetElements());
    return true;
}

// --- The page on the screen.

void CViewPages::UpdateView(UpdateHint hint, CGalleryProject& project)
{
    const TraceScope scope(QStringLiteral("CViewPages::UpdateView"));
    if (hint == UpdateHint::ProjectReplaced || hint == UpdateHint::ProjectRenamed) {
        toolBar->SetTitle(project.GetName());
    }
    if (hint == UpdateHint::ProjectReplaced || hint == UpdateHint::GalleryChosen) {
        UpdateMenus(project);
    }
    if (ConcernsPagesView(hint) && hint != UpdateHint::ProjectRenamed) {
        ShowCurrentPage(project);
    }
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
    htmlView->LoadHtml(page, stays ? CHTMLView::ScrollPlace::Keep : CHTMLView::ScrollPlace::Top);
    Trace(QStringLiteral("After_load_HTML"));
}
