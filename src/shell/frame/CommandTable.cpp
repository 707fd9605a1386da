#include "shell/frame/CommandTable.h"

const std::vector<CommandRow>& GetCommandTable()
{
    static const std::vector<CommandRow> table{
        {CommandId::New, "new", StringId::NewCommand, StringId::NewTip, "Ctrl+N"},
        {CommandId::Open, "open", StringId::OpenCommand, StringId::OpenTip, "Ctrl+O"},
        {CommandId::Save, "save", StringId::SaveCommand, StringId::SaveTip, "Ctrl+S"},
        {CommandId::SaveAs, "save-as", StringId::SaveAsCommand, StringId::SaveAsTip, ""},
        {CommandId::Exit, "exit", StringId::ExitCommand, StringId::ExitTip, ""},
        {CommandId::Deploy, "deploy", StringId::DeployCommand, StringId::DeployTip, ""},
        {CommandId::LayoutMenu, "layout", StringId::LayoutCommand, StringId::LayoutTip, ""},
        {CommandId::StyleMenu, "style", StringId::StyleCommand, StringId::StyleTip, ""},
        {CommandId::ImageWatermark, "watermark", StringId::WatermarkCommand, StringId::WatermarkTip, ""},
        {CommandId::ImageSignature, "signature", StringId::SignatureCommand, StringId::SignatureTip, ""},
        {CommandId::Ads, "ads", StringId::AdsCommand, StringId::AdsTip, ""},
        {CommandId::OpenFolder, "open-folder", StringId::OpenFolderCommand, StringId::OpenFolderTip, ""},
        {CommandId::About, "about", StringId::AboutCommand, StringId::AboutTip, ""},
        {CommandId::Print, "print", StringId::PrintCommand, StringId::PrintTip, "Ctrl+P"},
        {CommandId::Undo, "undo", StringId::UndoCommand, StringId::UndoTip, "Ctrl+Z; Alt+Backspace"},
        {CommandId::Cut, "cut", StringId::CutCommand, StringId::CutTip, "Ctrl+X; Shift+Delete"},
        {CommandId::Copy, "copy", StringId::CopyCommand, StringId::CopyTip, "Ctrl+C"},
        {CommandId::Paste, "paste", StringId::PasteCommand, StringId::PasteTip, "Ctrl+V; Shift+Insert"},
        {CommandId::Clear, "remove", StringId::ClearCommand, StringId::ClearTip, "Delete"},
        {CommandId::NextPane, "next-pane", StringId::NextPaneCommand, StringId::NextPaneTip, "F6"},
        {CommandId::PreviousPane, "previous-pane", StringId::PreviousPaneCommand, StringId::PreviousPaneTip,
         "Shift+F6"},
    };
    return table;
}

QList<QKeySequence> KeysOf(const CommandRow& row)
{
    return QKeySequence::listFromString(QLatin1String(row.keys));
}
