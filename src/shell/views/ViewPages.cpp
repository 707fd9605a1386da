#include "shell/views/ViewPages.h"

#include <algorithm>

#include "common/Exceptions.h"
#include "common/Platform.h"
#include "common/TempFolder.h"
#include "common/Text.h"
#include "common/Trace.h"
#include "content/ContentGeneratorPreview.h"
#include "document/GalleryIterator.h"
#include "document/GalleryProject.h"
#include "shell/dialogs/DlgEditHref.h"
#include "shell/dialogs/DlgEditTextProperty.h"
#include "shell/dialogs/DlgVisibility.h"
#include "shell/views/FailurePage.h"
#include "shell/views/WaitCursor.h"
#include "template/CompoundTemplateSection.h"
#include "template/ContentGeneratorStringConverter.h"
#include "template/TemplateParsingException.h"
#include "template/TemplateVariableName.h"

namespace {

int32_t PositionOf(const UpdateParameter& parameter)
{
    const int32_t* const position = std::get_if<int32_t>(&parameter);
    return position ? *position : -1;
}

QString TextOf(const UpdateParameter& parameter)
{
    const QString* const text = std::get_if<QString>(&parameter);
    return text ? *text : QString();
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
      htmlView(new CHTMLView(services.browser, this))
{
    setObjectName(QStringLiteral("PagesView"));
    SetToolBar(toolBar);
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

void CViewPages::SendForPicture(UpdateHint hint, const QString& id)
{
    const int32_t index = iterator ? iterator->FindPictureIndex(id) : -1;
    if (index != -1) {
        notifier.Send(hint, index);
    }
}

void CViewPages::EditText(const TextToEdit& edited)
{
    if (!iterator) {
        return;
    }
    const QString text = ReadVariable(edited.property).value_or(edited.text);
    CDlgEditTextProperty dialog(
        edited.name, text,
        {.multiline = edited.multiline, .galleryWide = edited.property.startsWith(QStringLiteral("gallery"))},
        this);
    if (dialog.exec() == QDialog::Accepted) {
        WriteVariable(edited.property, dialog.GetText());
        notifier.Send(UpdateHint::TextEdited);
    }
}

void CViewPages::EditReference(const QString& name, const QString& hrefProperty, const QString& textProperty)
{
    if (!iterator) {
        return;
    }
    CDlgEditHref dialog(name,
                        {.url = ReadVariable(hrefProperty).value_or(QString()),
                         .text = ReadVariable(textProperty).value_or(QString())},
                        this);
    if (dialog.exec() == QDialog::Accepted) {
        WriteVariable(hrefProperty, dialog.GetReference().url);
        WriteVariable(textProperty, dialog.GetReference().text);
        notifier.Send(UpdateHint::TextEdited);
    }
}

std::optional<QString> CViewPages::ReadVariable(const QString& property)
{
    try {
        const CTemplateVariableName name(property);
        CVariant value;
        const bool found =
            iterator && iterator->GetVariable(name.GetObjectName(), name.GetVariableName(), value);
        return found && !value.IsEmpty()
                   ? std::optional(CContentGeneratorStringConverter().VariantToString(value))
                   : std::nullopt;
    } catch (const CExceptionBase& failure) {
        Trace(failure.GetDescription()); // a script may name what is no property
        return std::nullopt;
    }
}

void CViewPages::WriteVariable(const QString& property, const QString& text)
{
    const qsizetype point = property.indexOf(QLatin1Char('.'));
    if (iterator && point >= 0) {
        iterator->SetVariable(property.left(point), property.mid(point + 1), CVariant(text));
    }
}

void CViewPages::LoadURL(const QString& url)
{
    notifier.Send(UpdateHint::LinkFollowed, url);
}

// --- Changes of the document.

void CViewPages::UpdateProject(UpdateHint hint, const UpdateParameter& parameter, CGalleryProject& project)
{
    const CTraceScope scope("CViewPages::UpdateProject");
    if (hint == UpdateHint::Deploy && services.deploy) {
        services.deploy(project);
    }
    Change change{.hint = hint};
    if (!Apply(change, parameter, project)) {
        return;
    }
    CGallery* const gallery = project.GetCurrentGallery();
    if (gallery && change.positionToShow != -1) {
        gallery->SetCurrentPicture(change.positionToShow);
    }
    if (change.changed) {
        UpdateView(change.hint, project);
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
    case UpdateHint::PictureTurnedLeft:
    case UpdateHint::PictureTurnedRight:
    case UpdateHint::PictureRemoved:
        ApplyToPicture(change, PositionOf(parameter), *gallery);
        return true;
    case UpdateHint::LinkFollowed:
        FollowLink(change, TextOf(parameter), *gallery);
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
            CGalleryCatalogue::Templates& layouts = gallery.GetLayout().GetCatalogue().GetTemplates();
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
    const CTraceScope scope("CViewPages::UpdateView");
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
    if (!gallery) {
        iterator.reset();
        Show(std::string(), QString());
        return;
    }
    const std::string page = GenerateAnyPage(*gallery);
    SetShownFolders(*gallery);
    Show(page, PageOf(*gallery)); // asked behind the generation, which may go back by a page
}

void CViewPages::Show(const std::string& page, const QString& name)
{
    const bool stays = !name.isEmpty() && name == shownPage;
    shownPage = name;
    Trace(QStringLiteral("Before_load_HTML"));
    htmlView->LoadHtml(page, stays ? CHTMLView::ScrollPlace::Keep : CHTMLView::ScrollPlace::Top);
    Trace(QStringLiteral("After_load_HTML"));
}

// Whatever is wrong with a layout or a file, the program goes on and the person reads what it is.
std::string CViewPages::GenerateAnyPage(CGallery& gallery)
{
    try {
        return GeneratePage(gallery);
    } catch (const CTemplateParsingException& error) {
        iterator.reset();
        return BuildTemplateErrorPage(error, gallery);
    } catch (const CExceptionBase& failure) {
        iterator.reset();
        return BuildFailurePage(failure);
    }
}

std::string CViewPages::GeneratePage(CGallery& gallery)
{
    Trace(QStringLiteral("Before_getting_template_section"));
    CGalleryLayout& layout = gallery.GetLayout();
    CCompoundTemplateSection tree;
    if (layout.GetTemplate()) {
        layout.GetTemplate()->LoadPage(layout.GetTemplatePage(), tree);
    }
    Trace(QStringLiteral("After_getting_template_section"));
    const CWaitCursor cursor;
    CContentGeneratorPreview generator(FindTemporaryFolder());
    const auto bind = [&] {
        iterator = std::make_unique<CGalleryIterator>();
        iterator->Init(gallery);
        iterator->Reset();
        tree.Bind(*iterator, generator);
    };
    bind();
    const int32_t pageCount = iterator->GetPageCount();
    const int32_t pageIndex = iterator->GetPageIndex();
    if (pageCount != 0 && pageCount <= pageIndex) {
        layout.SetPageNumber(pageIndex - 1);
        bind();
    }
    iterator->SetPageIndex(iterator->GetPageIndex());
    iterator->PreparePictures();
    return tree.GenerateToString(*iterator, generator);
}

void CViewPages::SetShownFolders(CGallery& gallery)
{
    CGalleryManager& manager = gallery.GetManager();
    QStringList folders = {FindTemporaryFolder(), manager.GetTempFolder().GetPath(),
                           manager.GetProgramFolder()};
    if (const CGalleryTemplate* layout = gallery.GetLayout().GetTemplate()) {
        folders += layout->GetFolder();
    }
    for (const QString& folder : gallery.GetStyleDirectories()) {
        folders += folder;
    }
    htmlView->SetShownFolders(folders);
}
