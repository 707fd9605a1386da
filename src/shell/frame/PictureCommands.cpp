#include "shell/frame/PictureCommands.h"

#include <algorithm>
#include <iterator>

#include <QApplication>

#include "document/project/GalleryProject.h"
#include "editing/PictureActs.h"
#include "shell/frame/GalleryCommands.h"
#include "shell/frame/PictureClipboard.h"
#include "shell/frame/StandardCommands.h"
#include "shell/panes/DocumentDesk.h"
#include "shell/panes/folder/ViewFolder.h"
#include "shell/panes/galleries/ViewGalleries.h"
#include "shell/panes/pages/ViewPages.h"

namespace {

using Positions = std::vector<int32_t>;

// Nothing if the person has thought better of it.
std::optional<Act> TransferBetween(CommandId command, const CGalleryProject& project,
                                   const Positions& positions, QWidget& window)
{
    const int32_t gallery = project.GetCurrentGalleryIndex();
    const bool moves = command == CommandId::MoveToGallery;
    const std::optional<int32_t> target = AskForGallery(
        project, gallery, moves ? StringId::MoveToGalleryCommand : StringId::CopyToGalleryCommand, &window);
    if (!target) {
        return std::nullopt;
    }
    return moves ? MovePicturesTo(gallery, positions, *target) : CopyPicturesTo(gallery, positions, *target);
}

// Nothing if the person has thought better of it.
std::optional<Act> ActOf(CommandId command, const CGalleryProject& project, const Positions& positions,
                         QWidget& window)
{
    const int32_t gallery = project.GetCurrentGalleryIndex();
    switch (command) {
    case CommandId::Clear:
        return RemovePictures(project, gallery, positions);
    case CommandId::Cut:
        return CutPictures(project, gallery, positions);
    case CommandId::TurnLeft:
        return TurnPictures(gallery, positions, false);
    case CommandId::TurnRight:
        return TurnPictures(gallery, positions, true);
    case CommandId::MoveToFront:
        return MovePicturesBefore(gallery, positions, 0);
    case CommandId::MoveToEnd:
        return MovePicturesBefore(gallery, positions, project.FindGallery(gallery)->GetPictures().GetCount());
    case CommandId::MoveToGallery:
    case CommandId::CopyToGallery:
        return TransferBetween(command, project, positions, window);
    default:
        return std::nullopt;
    }
}

bool IsOne(CommandId command)
{
    static constexpr CommandId commands[] = {CommandId::SelectAll,
                                             CommandId::AddSelected,
                                             CommandId::Copy,
                                             CommandId::Cut,
                                             CommandId::Paste,
                                             CommandId::Clear,
                                             CommandId::TurnLeft,
                                             CommandId::TurnRight,
                                             CommandId::MoveToFront,
                                             CommandId::MoveToEnd,
                                             CommandId::MoveToGallery,
                                             CommandId::CopyToGallery,
                                             CommandId::EditPictureTexts};
    return std::find(std::begin(commands), std::end(commands), command) != std::end(commands);
}

} // namespace

void CPictureCommands::Perform(CommandId command)
{
    if (!IsOne(command)) {
        return;
    }
    const QWidget* const focus = QApplication::focusWidget();
    const bool isInFolder = services.folder.isAncestorOf(focus);
    const bool concernsGallery = command == CommandId::Paste || command == CommandId::EditPictureTexts;
    if (command == CommandId::AddSelected || (isInFolder && !concernsGallery)) {
        PerformInFolder(command);
    } else if (command == CommandId::Clear && services.galleries.isAncestorOf(focus)) {
        services.galleries.DeleteGallery();
    } else if (command == CommandId::EditPictureTexts) {
        EditTexts();
    } else if (command == CommandId::SelectAll) {
        services.pages.SelectAll();
    } else if (services.desk.GetProject().GetCurrentGallery()) {
        services.pages.WithPictures([this, command](const Positions& positions) {
            services.attempt([&] { PerformOn(command, positions); });
        });
    }
}

// Of several that are selected, else of all: one alone is edited on the page.
void CPictureCommands::EditTexts()
{
    const CGalleryProject& project = services.desk.GetProject();
    const CGallery* const gallery = project.GetCurrentGallery();
    if (!gallery || gallery->GetPictures().GetCount() == 0) {
        services.say(Text(StringId::NoPicturesForTexts));
        return;
    }
    const Positions selected = services.pages.GetSelectedPositions();
    const std::optional<Act> act =
        AskForPictureTexts(project, *gallery, selected.size() > 1 ? selected : Positions(), &services.window);
    if (act) {
        services.desk.Do(*act);
    }
}

void CPictureCommands::PerformInFolder(CommandId command)
{
    if (command == CommandId::SelectAll) {
        services.folder.SelectAll();
    } else if (services.folder.GetSelectedPaths().isEmpty()) {
        services.say(Text(StringId::NothingSelected));
    } else if (command == CommandId::AddSelected) {
        services.folder.AddSelected();
    } else if (command == CommandId::Copy) {
        SayCopied(CopyToClipboard(services.folder.GetSelectedPaths()));
    }
}

void CPictureCommands::PerformOn(CommandId command, const Positions& positions)
{
    CGalleryProject& project = services.desk.GetProject();
    if (command == CommandId::Paste) {
        // After what is selected.
        const int32_t place = positions.empty() ? -1 : positions.back() + 1;
        const std::optional<Act> act = PasteFromClipboard(*project.GetCurrentGallery(), place);
        act ? void(services.desk.Do(*act)) : services.say(Text(StringId::NothingToPaste));
    } else if (positions.empty()) {
        // Perhaps text of the page is selected.
        command == CommandId::Copy ? PerformStandardCommand(command, QApplication::focusWidget())
                                   : services.say(Text(StringId::NothingSelected));
    } else if (command == CommandId::Copy) {
        Copy(positions);
    } else if ((command == CommandId::MoveToGallery || command == CommandId::CopyToGallery) &&
               project.GetGalleries().size() < 2) {
        services.say(Text(StringId::OtherGalleryNeeded));
    } else {
        if (command == CommandId::Cut) {
            Copy(positions);
        }
        if (const std::optional<Act> act = ActOf(command, project, positions, services.window)) {
            services.desk.Do(*act);
        }
    }
}

void CPictureCommands::Copy(const Positions& positions)
{
    SayCopied(CopyToClipboard(*services.desk.GetProject().GetCurrentGallery(), positions));
}

void CPictureCommands::SayCopied(int count)
{
    services.say(count == 1 ? Text(StringId::PictureCopied) : Text(StringId::PicturesCopied, count));
}
