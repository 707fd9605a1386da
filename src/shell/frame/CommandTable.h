#pragma once

#include <vector>

#include <QKeySequence>
#include <QList>

#include "resources/StringTable.h"
#include "shell/frame/CommandIds.h"

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
