#pragma once

#include <vector>

#include "editing/TextActs.h"
#include "shell/panes/pages/ViewPagesExternalDispatch.h"

class CShownPage;
class QWidget;

// The dialogs in which a person edits texts of the page on the screen. They hand over what the person has
// changed and nothing else, and tell of a text that would be lost before it is typed. Screen's thread.

// A link of the page that is to be edited.
struct ReferenceToEdit {
    QString name;         // of the element, for people
    QString hrefProperty; // "object.variable"
    QString textProperty; // likewise
};

// Each returns what is to be written; empty if nothing is.
std::vector<TextChange> EditTextOfPage(const CShownPage& page,
                                       const CViewPagesExternalDispatchCommands::TextToEdit& edited,
                                       QWidget* parent);
std::vector<TextChange> EditReferenceOfPage(const CShownPage& page, const ReferenceToEdit& edited,
                                            QWidget* parent);
