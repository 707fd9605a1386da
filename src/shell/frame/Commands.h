#pragma once

#include <functional>
#include <map>
#include <vector>

#include <QKeySequence>
#include <QList>

#include "resources/StringTable.h"

class QAction;
class QWidget;

// The numbers of the frame's commands. Pages, update hints and tests name commands by them.
enum class CommandId : int {
    New = 57600,
    Open = 57601,
    Save = 57603,
    SaveAs = 57604,
    Print = 57607,
    Clear = 57632,
    Copy = 57634,
    Cut = 57635,
    Paste = 57637,
    SelectAll = 57642,
    Undo = 57643,
    Redo = 57644,
    About = 57664,
    Exit = 57665,
    EarlierVersion = 32800,
    NextPane = 57680,
    PreviousPane = 57681,
    Deploy = 32780,
    LayoutMenu = 32786,
    StyleMenu = 32788,
    OpenFolder = 32789,
    FindMissing = 32801,
    EmptyCache = 32802,
    SortByName = 32803,
    SortByDateTaken = 32804,
    SortByFileDate = 32805,
    ReverseOrder = 32806,
    EditPictureTexts = 32807,
    TurnLeft = 32815,
    TurnRight = 32816,
    MoveToFront = 32817,
    MoveToEnd = 32818,
    MoveToGallery = 32819,
    CopyToGallery = 32820,
    AddSelected = 32821,
    RenameGallery = 32810,
    DuplicateGallery = 32811,
    DeleteGallery = 32812,
    ImageWatermark = 32792,
    ImageSignature = 32794,
    Ads = 32797,
};

// Commands that choose from a list: the number minus that of the first is the place in the list.
namespace CommandRange {
constexpr int FirstLayout = 5000;
constexpr int FirstStyle = 5200;
constexpr int AfterLastStyle = 5400;
constexpr int FirstRecentProject = 33000;
constexpr int LastRecentProject = 33020;
} // namespace CommandRange

// One command of the frame as a person meets it.
struct CommandRow {
    CommandId id;
    const char* name; // of the action's object
    const char* icon; // name for LoadIcon
    StringId text;    // with "&" before the letter of the keyboard
    StringId tip;     // what it does, in one sentence
    const char* keys; // key sequences, parted by "; "; "" for none
};

// All commands that have an action, those without a place in the menu included.
const std::vector<CommandRow>& GetCommandTable();

QList<QKeySequence> KeysOf(const CommandRow& row);

// The actions of the command table: each with its icon, keys, tooltip and status tip. The actions belong to
// the window, so that their keys work wherever the focus is. Owned by the frame.
class CCommandActions {
public:
    // command: called with the number of the command that was chosen.
    CCommandActions(QWidget& window, const std::function<void(int commandId)>& command);

    QAction* Get(CommandId id) const { return actions.at(id); }
    // In the menu and, with its keys, in the tip of its button.
    void SetText(CommandId id, const QString& text);

private:
    std::map<CommandId, QAction*> actions;
};
