#pragma once

#include <QString>
#include <QStringList>

#include "shell/panes/PictureSelection.h"

// What the views tell the scripts of their pages about selections, and hear from them.

struct SelectionOptions {
    bool clicksSelect = false; // a click selects wherever it is, and two of them take what is selected
};

// Brings the script to a page; to be run before the others.
QString SelectionScript(const SelectionOptions& options);
// Marks the pictures of those ids and no others.
QString MarkScript(const QStringList& ids);

// keys: of the pictures that the page has named; way: its word for what is to happen with them. Returns false
// for what means nothing: then nothing has changed.
bool ApplySelection(CPictureSelection& selection, const QStringList& keys, const QString& way,
                    const QStringList& order);
