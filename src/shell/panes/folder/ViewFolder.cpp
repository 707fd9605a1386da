#include "shell/panes/folder/ViewFolder.h"

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Platform.h"
#include "common/Trace.h"
#include "document/project/GalleryProject.h"
#include "shell/dialogs/FileDialogs.h"
#include "shell/drag/DraggedPicture.h"
#include "shell/look/WaitCursor.h"
#include "shell/panes/folder/FolderLoader.h"
#include "shell/panes/folder/FolderPages.h"
#include "shell/panes/folder/ViewFolderImageIterator.h"

namespace {

using namespace std::chrono_literals;

constexpr auto resizePause = 400ms;   // after the last change of the size
constexpr auto progressPause = 100ms; // between two changes of the progress page

bool ListsFolderAnew(UpdateHint hint)
{
    return ConcernsFolderView(hint) && hint != UpdateHint::FolderReady;
}

} // namespace

CViewFolder::CViewFolder(const Services& services, QWidget* parent)
    : CPanel(parent),
      notifier(ViewId::Folder, services.notify),
      dispatch(*this),
      toolBar(new CViewFolderToolBar({.browse = [this] { ChooseFolder(); },
                                      .chooseFolder =
                                          [this](const QString& folder) {
                                              SetFolder(folder);
                                          }},
                                     this)),
      htmlView(new CHTMLView(services.browser, this)),
      watcher([this] { Refresh(); }),
      imageIterator(std::make_unique<CViewFolderImageIterator>(pictures)),
      loader(std::make_unique<CFolderLoader>(
          CFolderLoader::Listener{.filled = [this] { notifier.Send(UpdateHint::FolderReady); },
                                  .progressed =
                                      [this](const FolderProgress& progress) {
                                          OnProgress(progress);
                                      }}))
{
    setObjectName(QStringLiteral("FolderView"));
    SetToolBar(toolBar);
    SetClient(htmlView);
    htmlView->SetLoader(this);
    htmlView->SetExternalDispatch(&dispatch);
    resizeTimer.setSingleShot(true);
    resizeTimer.setInterval(resizePause);
    connect(&resizeTimer, &QTimer::timeout, this, &CViewFolder::Refresh);
    progressTimer.setSingleShot(true);
    progressTimer.setInterval(progressPause);
    connect(&progressTimer, &QTimer::timeout, this, &CViewFolder::ShowProgress);
}

CViewFolder::~CViewFolder() = default;

// --- What a person does.

void CViewFolder::ChooseFolder()
{
    const QString folder = AskForPictureFolder(folderPath, this);
    if (!folder.isEmpty()) {
        SetFolder(folder);
    }
}

void CViewFolder::SetFolder(const QString& folder)
{
    const QString chosen = WithoutTrailingSeparator(folder);
    if (chosen != WithoutTrailingSeparator(folderPath)) {
        folderPath = chosen;
        notifier.Send(UpdateHint::FolderChosen);
    }
}

void CViewFolder::AddImage(const QString& id)
{
    const int32_t index = FindIndex(id);
    if (index >= 0) {
        Choose(index);
        notifier.Send(UpdateHint::PictureAdded, index);
    }
}

void CViewFolder::Choose(int32_t index)
{
    imageIterator->HidePicture(index);
    chosenPaths[index] = pictures[static_cast<size_t>(index)]->GetPath();
}

void CViewFolder::AddPictureAt(int32_t index, const QString& path)
{
    const bool stays = index >= 0 && static_cast<size_t>(index) < pictures.size() &&
                       pictures[static_cast<size_t>(index)]->GetPath() == path;
    AddImage(QStringLiteral("i%1").arg(stays ? index : imageIterator->FindIndex(path)));
}

void CViewFolder::AddAllImages()
{
    std::vector<int32_t> indices;
    for (int32_t i = 0; loaded && i < imageIterator->GetPictureCount(); ++i) {
        if (!imageIterator->IsHidden(i)) {
            indices.push_back(i);
            Choose(i);
        }
    }
    if (!indices.empty()) {
        htmlView->RunScript(HideAllRowsScript());
        notifier.Send(UpdateHint::PicturesAdded, indices);
    }
}

void CViewFolder::LoadURL(const QString& url)
{
    const QString prefix = QStringLiteral("addpicture");
    if (url.startsWith(prefix)) {
        AddImage(QLatin1Char('i') + url.mid(prefix.size()));
    }
}

void CViewFolder::DragImage(const QString& id, const QString&)
{
    const int32_t index = FindIndex(id);
    if (index < 0) {
        return;
    }
    CFilePictureInfo& picture = *pictures[static_cast<size_t>(index)];
    const DraggedPicture dragged{.origin = DraggedPicture::Origin::Folder,
                                 .position = index,
                                 .path = picture.GetPath(),
                                 .look = picture.GetThumbnailPath()};
    // The drag has an event loop of its own, in which the page must be able to call.
    QTimer::singleShot(0, this, [this, dragged] { DragPicture(dragged, *htmlView); });
}

int32_t CViewFolder::FindIndex(const QString& id) const
{
    bool isNumber = false;
    const int32_t index = id.mid(1).toInt(&isNumber);
    const bool isKnown = loaded && isNumber && id.startsWith(QLatin1Char('i')) && index >= 0 &&
                         static_cast<size_t>(index) < pictures.size();
    return isKnown && !imageIterator->IsHidden(index) ? index : -1;
}

// --- Changes of the document.

void CViewFolder::UpdateProject(UpdateHint hint, const UpdateParameter& parameter, CGalleryProject& project)
{
    CGallery* const gallery = project.GetCurrentGallery();
    const bool adds = hint == UpdateHint::PictureAdded || hint == UpdateHint::PicturesAdded;
    if (hint == UpdateHint::FolderChosen) {
        project.AddFolder(folderPath);
        project.SetRecentFolder(folderPath);
    } else if (adds && gallery) {
        AddToGallery(parameter, *gallery);
    }
    CGalleryProjectConsumer::UpdateProject(hint, parameter, project);
    if (adds) {
        notifier.Send(UpdateHint::CoverChanged);
    }
}

// One index, or several in ascending order. The gallery updates its cover itself.
void CViewFolder::AddToGallery(const UpdateParameter& parameter, CGallery& gallery)
{
    std::vector<int32_t> indices;
    if (const auto* list = std::get_if<std::vector<int32_t>>(&parameter)) {
        indices = *list;
    } else if (const auto* one = std::get_if<int32_t>(&parameter)) {
        indices = {*one};
    }
    std::vector<int32_t> added;
    for (const int32_t index : indices) {
        const QString path = TakeChosenPath(index);
        const int32_t row = imageIterator->FindIndex(path);
        if (!path.isEmpty() && gallery.AddPicture(path) && row >= 0) {
            imageIterator->HidePicture(row);
            added.push_back(row);
        }
    }
    if (!added.empty()) {
        htmlView->RunScript(HideRowsScript(added));
    }
}

// The picture that was chosen by that index: the list may have become another one meanwhile.
QString CViewFolder::TakeChosenPath(int32_t index)
{
    const auto chosen = chosenPaths.extract(index);
    if (!chosen.empty()) {
        return chosen.mapped();
    }
    const bool isKnown = index >= 0 && static_cast<size_t>(index) < pictures.size();
    return isKnown ? pictures[static_cast<size_t>(index)]->GetPath() : QString();
}

void CViewFolder::UpdateView(UpdateHint hint, CGalleryProject& project)
{
    const TraceScope scope(QStringLiteral("CViewFolder::UpdateView"));
    if (ListsFolderAnew(hint)) {
        UpdateList(hint, project);
    } else if (hint == UpdateHint::FolderReady) {
        if (std::optional<FilledFolder> filled = loader->Take(folderPath)) {
            Display(std::move(*filled), project.GetCurrentGallery());
        }
    }
}

void CViewFolder::UpdateList(UpdateHint hint, CGalleryProject& project)
{
    if (hint == UpdateHint::ProjectReplaced) {
        folderPath = WithoutTrailingSeparator(project.GetRecentFolder());
    }
    galleryPaths = KeysOfPictures(project.GetCurrentGallery());
    toolBar->UpdateFoldersMenu(project.GetFolders(), project.GetRecentFolder());
    toolBar->SetTitle(folderPath.isEmpty() ? QString() : FolderName(folderPath));
    StartLoading();
}

// --- Loading.

QSize CViewFolder::GetCardSize() const
{
    return CardSize(htmlView->width());
}

// The list of another folder goes at once. That of the same folder stays, and can be used, until the new one
// is there: nothing flashes.
void CViewFolder::StartLoading()
{
    const bool isOther = folderPath != shownFolder || !loaded;
    loader->Choose(folderPath, GetCardSize());
    if (isOther) {
        loaded = false;
        pictures.clear();
        imageIterator->SetCollection();
        isProgressPageShown = false;
        waitingCount = 0;
        waitingCards.clear();
        progressTimer.stop();
    }
    watcher.Watch(folderPath);
    isOutdated = false;
    if (folderPath.isEmpty()) {
        DisplayText(BuildTextPage(Text(StringId::NoFolderChosen), {Text(StringId::ChooseFolderAdvice)}));
        return;
    }
    if (isOther && shownFolder != folderPath) {
        htmlView->LoadHtml(BuildLoadingPage());
        shownFolder = folderPath;
    }
    loader->Request();
}

// A change while the worker is busy waits for it: what it has made by then is not lost, and a folder that is
// being filled shows what has come.
void CViewFolder::Refresh()
{
    if (loader->IsWorking() && loader->GetCard() == GetCardSize()) {
        isOutdated = true;
    } else if (!folderPath.isEmpty()) {
        StartLoading();
    }
}

// --- Pages.

void CViewFolder::OnProgress(const FolderProgress& progress)
{
    if (loaded || progress.number != loader->GetNumber()) {
        return;
    }
    waitingCount = progress.count;
    for (const FolderCard& card : progress.cards) {
        if (galleryPaths.count(card.path) == 0) {
            waitingCards.push_back(card);
        }
    }
    if (!progressTimer.isActive()) {
        ShowProgress();
    }
}

void CViewFolder::ShowProgress()
{
    if (loaded || waitingCount == 0) {
        return;
    }
    if (!isProgressPageShown) {
        isProgressPageShown = true;
        Load(BuildProgressPage(waitingCount));
    } else {
        htmlView->RunScript(SetCountScript(waitingCount));
    }
    if (!waitingCards.empty()) {
        htmlView->RunScript(AppendCardsScript(waitingCards));
    }
    waitingCount = 0;
    waitingCards.clear();
    progressTimer.start();
}

void CViewFolder::Display(FilledFolder filled, CGallery* gallery)
{
    pictures = std::move(filled.found.pictures);
    imageIterator->SetCollection();
    watcher.WatchFiles(filled.found.unfinished);
    progressTimer.stop();
    if (!filled.failure.isEmpty()) {
        DisplayText(BuildFailurePage(folderPath, {filled.failure}));
    } else if (filled.found.state != FolderPictures::State::Listed) {
        DisplayText(BuildStatePage(folderPath, filled.found.state));
    } else {
        imageIterator->SetGallery(gallery);
        DisplayFolder();
    }
    if (isOutdated) {
        StartLoading();
    }
}

void CViewFolder::DisplayFolder()
{
    const CWaitCursor cursor;
    try {
        Load(BuildListPage({.folder = folderPath, .card = loader->GetCard()}, *imageIterator));
        loaded = true;
    } catch (const CExceptionBase& error) {
        DisplayText(BuildFailurePage(folderPath, {error.GetCaption(), error.GetDescription()}));
    }
}

void CViewFolder::DisplayText(const std::string& page)
{
    pictures.clear();
    imageIterator->SetCollection();
    Load(page);
    loaded = true;
}

void CViewFolder::Load(const std::string& page)
{
    htmlView->SetShownFolders({FindTemporaryFolder(), FindImageCacheFolder()});
    htmlView->LoadHtml(page, shownFolder == folderPath ? CHTMLView::ScrollPlace::Keep
                                                       : CHTMLView::ScrollPlace::Top);
    shownFolder = folderPath;
}

void CViewFolder::resizeEvent(QResizeEvent* event)
{
    CPanel::resizeEvent(event);
    // The page scales its cards meanwhile.
    if (loader->GetNumber() > 0 && loader->GetCard() != GetCardSize()) {
        resizeTimer.start();
    }
}
