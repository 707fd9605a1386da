#pragma once

#include "shell/frame/Commands.h"

class QWidget;

// Print, undo, cut, copy, paste and delete, done as the widget offers them that has the focus: a text field,
// or the page of a browser control. Nothing happens in a widget that offers no such thing.
void PerformStandardCommand(CommandId command, QWidget* focus);
