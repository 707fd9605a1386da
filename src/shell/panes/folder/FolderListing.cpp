#include "shell/panes/folder/FolderListing.h"

#include <algorithm>
#include <utility>

#include "common/Exceptions.h"
#include "resources/StringTable.h"
#include "shell/look/WaitCursor.h"
#include "shell/panes/folder/FolderPages.h"
#include "shell/panes/folder/ViewFolderImageIterator.h"

namespace {

using namespace std::chrono_literals;

constexpr auto progressPause = 100ms; // between two changes of the progress page

} // namespace

CFolderListing::CFolderListing(Services services)
    : services(std::move(services)),
      watcher([this] { Refresh(); }),
      iterator(std::make_unique<CViewFolderImageIterator>(pictures)),
      loader(
          std::make_unique<CFolderLoader>(CFolderLoader::Listener{.filled = [this] { OnFilled(); },
                                                                  .progressed =
                                                                      [this](const FolderProgress& progress) {
                                                                          OnProgress(progress);
                                                                      }}))
{
    progressTimer.setSingleShot(true);
    progressTimer.setInterval(progressPause);
    progressTimer.callOnTimeout([this] { ShowProgress(); });
}

CFolderListing::~CFolderListing() = default;

void CFolderListing::Show(const QString& newFolder)
{
    folder = newFolder;
    Begin();
}

// The list of another folder goes at once. That of the same folder stays, and can be used, until the new one
// is there: nothing flashes.
void CFolderListing::Begin()
{
    galleryPaths = KeysOfPictures(services.getGallery());
    loader->Choose(folder, services.getCardSize());
    watcher.Watch(folder);
    isOutdated = false;
    if (state != State::Shown || folder != folderOnScreen) {
        Forget();
    }
    if (folder.isEmpty()) {
        DisplayText(BuildTextPage(Text(StringId::NoFolderChosen), {Text(StringId::ChooseFolderAdvice)}));
        return;
    }
    if (folder != folderOnScreen) {
        Load(BuildLoadingPage());
    }
    loader->Request();
}

void CFolderListing::Forget()
{
    state = State::Empty;
    pictures.clear();
    iterator->SetCollection();
    waiting = {};
    progressTimer.stop();
    services.changed();
}

// A change while the loader is busy waits for it: what it has made by then is not lost, and a folder that is
// being filled shows what has come.
void CFolderListing::Refresh()
{
    if (loader->IsWorking() && !IsOutOfSize()) {
        isOutdated = true;
    } else if (!folder.isEmpty()) {
        Begin();
    }
}

bool CFolderListing::IsOutOfSize() const
{
    return loader->GetNumber() > 0 && loader->GetCard() != services.getCardSize();
}

// Pictures that have come into the gallery leave the list at once. For those that have left it, or were added
// by others while the list was being made, the folder is listed anew.
void CFolderListing::FollowGallery()
{
    const std::set<QString> paths = KeysOfPictures(services.getGallery());
    const bool onlyAdds = std::includes(paths.begin(), paths.end(), galleryPaths.begin(), galleryPaths.end());
    if (onlyAdds && IsShown()) {
        TakeOffList(paths);
    } else if (paths != galleryPaths) {
        Begin();
    }
}

void CFolderListing::TakeOffList(const std::set<QString>& paths)
{
    std::vector<int32_t> rows;
    size_t shown = 0;
    for (int32_t index = 0; index < iterator->GetPictureCount(); ++index) {
        if (iterator->IsHidden(index)) {
            continue;
        }
        ++shown;
        if (paths.count(pictures[static_cast<size_t>(index)]->GetPath()) != 0) {
            iterator->HidePicture(index);
            rows.push_back(index);
        }
    }
    galleryPaths = paths;
    if (rows.empty()) {
        return;
    }
    const bool isNoneLeft = rows.size() == shown;
    services.run(isNoneLeft ? HideAllRowsScript() : HideRowsScript(rows));
    services.changed();
    if (isNoneLeft) {
        Begin(); // a list without rows says why it has none
    }
}

const CFilePictureInfo* CFolderListing::Find(const QString& path) const
{
    const int32_t index = IsShown() ? iterator->FindIndex(path) : -1;
    return index >= 0 && !iterator->IsHidden(index) ? pictures[static_cast<size_t>(index)].get() : nullptr;
}

std::vector<std::pair<QString, QString>> CFolderListing::List() const
{
    std::vector<std::pair<QString, QString>> list;
    for (int32_t index = 0; IsShown() && index < iterator->GetPictureCount(); ++index) {
        if (!iterator->IsHidden(index)) {
            list.emplace_back(QStringLiteral("i%1").arg(index),
                              pictures[static_cast<size_t>(index)]->GetPath());
        }
    }
    return list;
}

// --- What comes from the loader.

void CFolderListing::OnFilled()
{
    if (std::optional<FilledFolder> filled = loader->Take(folder)) {
        Display(std::move(*filled));
    }
}

void CFolderListing::OnProgress(const FolderProgress& progress)
{
    if (IsShown() || progress.number != loader->GetNumber()) {
        return;
    }
    waiting.count = progress.count;
    std::copy_if(progress.cards.begin(), progress.cards.end(), std::back_inserter(waiting.cards),
                 [this](const FolderCard& card) { return galleryPaths.count(card.path) == 0; });
    if (!progressTimer.isActive()) {
        ShowProgress();
    }
}

void CFolderListing::ShowProgress()
{
    if (IsShown() || waiting.count == 0) {
        return;
    }
    if (state == State::Empty) {
        state = State::Filling;
        Load(BuildProgressPage(waiting.count));
    } else {
        services.run(SetCountScript(waiting.count));
    }
    if (!waiting.cards.empty()) {
        services.run(AppendCardsScript(waiting.cards));
    }
    waiting = {};
    progressTimer.start();
}

void CFolderListing::Display(FilledFolder filled)
{
    pictures = std::move(filled.found.pictures);
    iterator->SetCollection();
    watcher.WatchFiles(filled.found.unfinished);
    progressTimer.stop();
    if (!filled.failure.isEmpty()) {
        DisplayText(BuildFailurePage(folder, {filled.failure}));
    } else if (filled.found.state != FolderPictures::State::Listed) {
        DisplayText(BuildStatePage(folder, filled.found.state));
    } else {
        iterator->SetGallery(services.getGallery());
        DisplayList();
    }
    if (isOutdated) {
        Begin();
    }
}

void CFolderListing::DisplayList()
{
    const CWaitCursor cursor;
    try {
        const std::string page = BuildListPage({.folder = folder, .card = loader->GetCard()}, *iterator);
        state = State::Shown;
        Load(page);
    } catch (const CExceptionBase& error) {
        DisplayText(BuildFailurePage(folder, {error.GetCaption(), error.GetDescription()}));
    }
}

void CFolderListing::DisplayText(const std::string& page)
{
    pictures.clear();
    iterator->SetCollection();
    state = State::Shown;
    Load(page);
}

void CFolderListing::Load(const std::string& page)
{
    services.load(page, folderOnScreen == folder ? HTMLScrollPlace::Keep : HTMLScrollPlace::Top);
    folderOnScreen = folder;
    services.changed();
}
