#include "shell/frame/Commands.h"

#include <iterator>

#include <QAction>
#include <QWidget>

#include "shell/look/Icons.h"

namespace {

constexpr CommandRow Table[] = {
    {CommandId::New, "NewProject", "new", StringId::NewCommand, StringId::NewTip, "Ctrl+N"},
    {CommandId::Open, "OpenProject", "open", StringId::OpenCommand, StringId::OpenTip, "Ctrl+O"},
    {CommandId::Save, "SaveProject", "save", StringId::SaveCommand, StringId::SaveTip, "Ctrl+S"},
    {CommandId::SaveAs, "SaveProjectAs", "save-as", StringId::SaveAsCommand, StringId::SaveAsTip, ""},
    {CommandId::EarlierVersion, "EarlierVersion", "recent", StringId::EarlierVersionCommand,
     StringId::EarlierVersionTip, ""},
    {CommandId::Exit, "Exit", "exit", StringId::ExitCommand, StringId::ExitTip, ""},
    {CommandId::Deploy, "Deploy", "deploy", StringId::DeployCommand, StringId::DeployTip, ""},
    {CommandId::LayoutMenu, "LayoutMenu", "layout", StringId::LayoutCommand, StringId::LayoutTip, ""},
    {CommandId::StyleMenu, "StyleMenu", "style", StringId::StyleCommand, StringId::StyleTip, ""},
    {CommandId::ImageWatermark, "ImageWatermark", "watermark", StringId::WatermarkCommand,
     StringId::WatermarkTip, ""},
    {CommandId::ImageSignature, "ImageSignature", "signature", StringId::SignatureCommand,
     StringId::SignatureTip, ""},
    {CommandId::Ads, "Ads", "ads", StringId::AdsCommand, StringId::AdsTip, ""},
    {CommandId::OpenFolder, "OpenFolder", "open-folder", StringId::OpenFolderCommand, StringId::OpenFolderTip,
     ""},
    {CommandId::FindMissing, "FindMissing", "find", StringId::FindMissingCommand, StringId::FindMissingTip,
     ""},
    {CommandId::SortByName, "SortByName", "sort", StringId::SortByName, StringId::SortByNameTip, ""},
    {CommandId::SortByDateTaken, "SortByDateTaken", "sort", StringId::SortByDateTaken,
     StringId::SortByDateTakenTip, ""},
    {CommandId::SortByFileDate, "SortByFileDate", "sort", StringId::SortByFileDate,
     StringId::SortByFileDateTip, ""},
    {CommandId::ReverseOrder, "ReverseOrder", "sort", StringId::ReverseOrder, StringId::ReverseOrderTip, ""},
    {CommandId::EditPictureTexts, "EditPictureTexts", "titles", StringId::PictureTextsCommand,
     StringId::PictureTextsTip, ""},
    {CommandId::RenameGallery, "RenameGallery", "edit-text", StringId::RenameGalleryCommand,
     StringId::RenameGalleryTip, "F2"},
    {CommandId::DuplicateGallery, "DuplicateGallery", "duplicate", StringId::DuplicateGalleryCommand,
     StringId::DuplicateGalleryTip, ""},
    {CommandId::DeleteGallery, "DeleteGallery", "remove", StringId::DeleteGalleryCommand,
     StringId::DeleteGalleryTip, ""},
    {CommandId::EmptyCache, "EmptyCache", "remove", StringId::EmptyCacheCommand, StringId::EmptyCacheTip, ""},
    {CommandId::About, "About", "about", StringId::AboutCommand, StringId::AboutTip, ""},
    {CommandId::Print, "Print", "print", StringId::PrintCommand, StringId::PrintTip, "Ctrl+P"},
    {CommandId::Undo, "Undo", "undo", StringId::UndoCommand, StringId::UndoTip, "Ctrl+Z; Alt+Backspace"},
    {CommandId::Redo, "Redo", "redo", StringId::RedoCommand, StringId::RedoTip, "Ctrl+Shift+Z; Ctrl+Y"},
    {CommandId::Cut, "Cut", "cut", StringId::CutCommand, StringId::CutTip, "Ctrl+X; Shift+Delete"},
    {CommandId::Copy, "Copy", "copy", StringId::CopyCommand, StringId::CopyTip, "Ctrl+C"},
    {CommandId::Paste, "Paste", "paste", StringId::PasteCommand, StringId::PasteTip, "Ctrl+V; Shift+Insert"},
    {CommandId::Clear, "Clear", "remove", StringId::ClearCommand, StringId::ClearTip, "Delete"},
    {CommandId::SelectAll, "SelectAll", "select-all", StringId::SelectAllCommand, StringId::SelectAllTip,
     "Ctrl+A"},
    {CommandId::TurnLeft, "TurnLeft", "rotate-left", StringId::TurnLeftCommand, StringId::TurnLeftTip,
     "Ctrl+L"},
    {CommandId::TurnRight, "TurnRight", "rotate-right", StringId::TurnRightCommand, StringId::TurnRightTip,
     "Ctrl+R"},
    {CommandId::MoveToFront, "MoveToFront", "to-front", StringId::MoveToFrontCommand,
     StringId::MoveToFrontTip, "Ctrl+Home"},
    {CommandId::MoveToEnd, "MoveToEnd", "to-end", StringId::MoveToEndCommand, StringId::MoveToEndTip,
     "Ctrl+End"},
    {CommandId::MoveToGallery, "MoveToGallery", "move-to", StringId::MoveToGalleryCommand,
     StringId::MoveToGalleryTip, "Ctrl+M"},
    {CommandId::CopyToGallery, "CopyToGallery", "copy-to", StringId::CopyToGalleryCommand,
     StringId::CopyToGalleryTip, "Ctrl+Shift+M"},
    {CommandId::AddSelected, "AddSelected", "add", StringId::AddSelected, StringId::AddSelectedTip, ""},
    {CommandId::NextPane, "NextPane", "next-pane", StringId::NextPaneCommand, StringId::NextPaneTip, "F6"},
    {CommandId::PreviousPane, "PreviousPane", "previous-pane", StringId::PreviousPaneCommand,
     StringId::PreviousPaneTip, "Shift+F6"},
};

// "New (Ctrl+N)"
QString ToolTipOf(const QAction& action)
{
    QString text = action.text();
    text.remove(QLatin1Char('&')).remove(QStringLiteral("..."));
    const QString keys = action.shortcut().toString(QKeySequence::NativeText);
    return keys.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, keys);
}

QAction* MakeAction(const CommandRow& row, QWidget& window)
{
    auto* action = new QAction(LoadIcon(QString::fromLatin1(row.icon)), Text(row.text), &window);
    action->setObjectName(QString::fromLatin1(row.name));
    action->setShortcuts(KeysOf(row));
    action->setToolTip(ToolTipOf(*action));
    action->setStatusTip(Text(row.tip));
    action->setData(static_cast<int>(row.id));
    // The platform shall not guess a place for it by its text.
    action->setMenuRole(QAction::NoRole);
    return action;
}

} // namespace

const std::vector<CommandRow>& GetCommandTable()
{
    static const std::vector<CommandRow> table(std::begin(Table), std::end(Table));
    return table;
}

QList<QKeySequence> KeysOf(const CommandRow& row)
{
    // An empty text would give one empty key.
    const QString keys = QString::fromLatin1(row.keys);
    return keys.isEmpty() ? QList<QKeySequence>() : QKeySequence::listFromString(keys);
}

CCommandActions::CCommandActions(QWidget& window, const std::function<void(int commandId)>& command)
{
    for (const CommandRow& row : GetCommandTable()) {
        QAction* const action = MakeAction(row, window);
        QObject::connect(action, &QAction::triggered, &window,
                         [command, id = static_cast<int>(row.id)] { command(id); });
        window.addAction(action);
        actions[row.id] = action;
    }
}

void CCommandActions::SetText(CommandId id, const QString& text)
{
    QAction& action = *Get(id);
    action.setText(text);
    action.setToolTip(ToolTipOf(action));
}
