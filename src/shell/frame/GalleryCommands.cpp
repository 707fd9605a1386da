#include "shell/frame/GalleryCommands.h"

#include <set>

#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "common/WorkerPool.h"
#include "document/pictures/PictureFiles.h"
#include "document/project/GalleryProject.h"
#include "editing/LookActs.h"
#include "editing/PictureActs.h"
#include "editing/SortOrder.h"
#include "editing/TextActs.h"
#include "imaging/PictureDate.h"
#include "shell/dialogs/DlgAdvertisements.h"
#include "shell/dialogs/DlgChooseGallery.h"
#include "shell/dialogs/DlgImageWatermark.h"
#include "shell/dialogs/DlgPictureTexts.h"
#include "shell/dialogs/DlgTextStamp.h"
#include "shell/look/DialogParts.h"
#include "shell/look/Waiting.h"
#include "template/contracts/ContentGeneratorStringConverter.h"

namespace {

std::optional<Act> AskForAdvertisements(const CGallery& gallery, QWidget* parent)
{
    const QString& page = gallery.GetLayout().GetTemplatePage();
    const GalleryTexts::Advertisements& advertisements = gallery.GetTexts().advertisements;
    const auto texts = advertisements.find(page);
    CDlgAdvertisements dialog(texts != advertisements.end() ? texts->second : std::map<QString, QString>(),
                              parent);
    return dialog.exec() == QDialog::Accepted
               ? std::optional(ChangeAdvertisements(gallery.GetIndex(), page, dialog.GetSections()))
               : std::nullopt;
}

// By path. Files are read on all cores, and none any more when the person has stopped it.
std::optional<std::map<QString, QDateTime>> ReadDates(const CGallery& gallery, QWidget* parent)
{
    std::vector<std::pair<QString, QDateTime>> dates;
    for (int32_t position = 0; position < gallery.GetPictures().GetCount(); ++position) {
        if (const auto* file = dynamic_cast<const CFilePictureInfo*>(gallery.GetPictures().GetAt(position))) {
            dates.emplace_back(file->GetPath(), QDateTime());
        }
    }
    bool isStopped = false;
    WorkWhileWaiting(
        Text(StringId::ReadingDates),
        [&](const CStopSignal& stop) {
            OnAllCores(dates.size(), [&](size_t i) {
                if (!stop.IsSet()) {
                    dates[i].second = ReadDateTaken(dates[i].first);
                }
            });
            isStopped = stop.IsSet();
        },
        parent);
    return isStopped ? std::nullopt : std::optional(std::map<QString, QDateTime>(dates.begin(), dates.end()));
}

SortKey KeyOf(CommandId command)
{
    switch (command) {
    case CommandId::SortByName:
        return SortKey::Name;
    case CommandId::SortByDateTaken:
        return SortKey::DateTaken;
    case CommandId::SortByFileDate:
        return SortKey::FileDate;
    default:
        return SortKey::Reverse;
    }
}

const QString TitleVariable = QStringLiteral("title");
const QString DescriptionVariable = QStringLiteral("description");

QString TextOf(const CPictureInfo& picture, const QString& variable)
{
    const std::optional<CVariant> value = picture.GetVariable(variable);
    return value ? CContentGeneratorStringConverter().VariantToString(*value) : QString();
}

// Of a child gallery no file is asked for: its cover would have to be made.
PictureTexts DescribePicture(const CPictureInfo& picture)
{
    const auto* const file = dynamic_cast<const CFilePictureInfo*>(&picture);
    return {.path = file ? file->GetPath() : QString(),
            .quarterTurns = file ? file->GetAngle() : 0,
            .fileName = file ? ExtractLastName(file->GetPath()) : QString(),
            .title = TextOf(picture, TitleVariable),
            .description = TextOf(picture, DescriptionVariable)};
}

// All if none is wanted.
std::vector<int32_t> ListPositions(const CGallery& gallery, const std::vector<int32_t>& wanted)
{
    const std::set<int32_t> known(wanted.begin(), wanted.end());
    std::vector<int32_t> positions;
    for (int32_t position = 0; position < gallery.GetPictures().GetCount(); ++position) {
        if (known.empty() || known.count(position) != 0) {
            positions.push_back(position);
        }
    }
    return positions;
}

TextChange ChangeOf(int32_t position, const QString& variable, const QString& text)
{
    return {.place = {.owner = TextPlace::Owner::Picture, .name = variable, .position = position},
            .text = CVariant(text)};
}

// By their titles, as pages do; a gallery that has none by its name.
QString NameOf(const CGallery& gallery)
{
    const std::optional<CVariant> title = gallery.GetTexts().own.Find(TitleVariable);
    const bool hasTitle = title && !title->GetString().isEmpty();
    return hasTitle ? title->GetString() : gallery.GetDisplayName();
}

std::vector<ListedGallery> ListGalleries(const CGalleryProject& project)
{
    std::vector<ListedGallery> listed;
    for (const int32_t index : project.ListBelow(project.GetRootGalleryIndex())) {
        if (const CGallery* const gallery = project.FindGallery(index)) {
            const CGallery* const parent = gallery->GetParent();
            const auto children = static_cast<int32_t>(gallery->GetChildren().size());
            listed.push_back({.index = index,
                              .parent = parent ? parent->GetIndex() : -1,
                              .title = NameOf(*gallery),
                              .pictures = gallery->GetPictures().GetCount() - children});
        }
    }
    return listed;
}

// A folder's listing leaves ".jpeg" out; one that is dropped by hand is meant.
bool IsDroppedPicture(const QString& path)
{
    return IsPictureFile(path) || path.endsWith(QStringLiteral(".jpeg"), Qt::CaseInsensitive);
}

} // namespace

std::optional<Act> AskForEffect(CommandId command, const CGallery& gallery, QWidget* parent)
{
    if (command == CommandId::ImageWatermark) {
        CGalleryContent::ImageStamps stamps = gallery.GetImageStamps();
        return CDlgImageWatermark(stamps, parent).exec() == QDialog::Accepted
                   ? std::optional(ChangeWatermarks(gallery.GetIndex(), stamps))
                   : std::nullopt;
    }
    if (command == CommandId::ImageSignature) {
        CGalleryContent::TextStamps stamps = gallery.GetTextStamps();
        return CDlgTextStamp(stamps, parent).exec() == QDialog::Accepted
                   ? std::optional(ChangeSignatures(gallery.GetIndex(), stamps))
                   : std::nullopt;
    }
    return AskForAdvertisements(gallery, parent);
}

std::optional<Act> SortBy(CommandId command, const CGallery& gallery, QWidget* parent)
{
    const SortKey key = KeyOf(command);
    std::map<QString, QDateTime> dates;
    if (key == SortKey::DateTaken) {
        std::optional<std::map<QString, QDateTime>> read = ReadDates(gallery, parent);
        if (!read) {
            return std::nullopt;
        }
        dates = std::move(*read);
    }
    return SortPictures(gallery.GetIndex(),
                        OrderBy(gallery, key, [&](const QString& path) { return dates[path]; }));
}

std::optional<Act> AskForPictureTexts(const CGalleryProject& project, const CGallery& gallery,
                                      const std::vector<int32_t>& wanted, QWidget* parent)
{
    const std::vector<int32_t> positions = ListPositions(gallery, wanted);
    std::vector<PictureTexts> pictures;
    for (const int32_t position : positions) {
        pictures.push_back(DescribePicture(*gallery.GetPictures().GetAt(position)));
    }
    if (pictures.empty()) {
        return std::nullopt;
    }
    CDlgPictureTexts dialog(std::move(pictures), parent);
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    std::vector<TextChange> changes;
    for (const PictureTextsChange& change : dialog.GetChanges()) {
        const int32_t position = positions[static_cast<size_t>(change.row)];
        if (change.title) {
            changes.push_back(ChangeOf(position, TitleVariable, *change.title));
        }
        if (change.description) {
            changes.push_back(ChangeOf(position, DescriptionVariable, *change.description));
        }
    }
    return changes.empty() ? std::nullopt
                           : std::optional(EditPictureTexts(project, gallery.GetIndex(), changes));
}

std::optional<int32_t> AskForGallery(const CGalleryProject& project, int32_t current, StringId title,
                                     QWidget* parent)
{
    CDlgChooseGallery dialog(ListGalleries(project),
                             {.title = AccessibleNameOf(Text(title)),
                              .buttonText = Text(StringId::ChooseGalleryButton),
                              .current = current},
                             parent);
    return dialog.exec() == QDialog::Accepted ? dialog.GetChosen() : std::nullopt;
}

DroppedFiles SortDropped(const QStringList& paths)
{
    DroppedFiles files;
    for (const QString& path : paths) {
        if (FolderExists(path)) {
            for (const QString& picture : ListPictureFiles(path)) {
                files.pictures += picture;
            }
        } else if (path.endsWith(QStringLiteral(".gallery"), Qt::CaseInsensitive)) {
            files.project = files.project.isEmpty() ? path : files.project;
        } else if (IsDroppedPicture(path)) {
            files.pictures += path;
        }
    }
    return files;
}
