#pragma once

#include "shell/panes/pages/ViewPagesExternalDispatch.h"

class CShownPage;
class QWidget;

// The dialogs in which a person edits texts of the page on the screen. They write what the person has changed
// and nothing else, and tell of a text that would be lost before it is typed. Screen's thread.

// A link of the page that is to be edited.
struct ReferenceToEdit {
    QString name;         // of the element, for people
    QString hrefProperty; // "object.variable"
    QString textProperty; // likewise
};

// Each returns whether something was written.
bool EditTextOfPage(CShownPage& page, const CViewPagesExternalDispatchCommands::TextToEdit& edited,
                    QWidget* parent);
bool EditReferenceOfPage(CShownPage& page, const ReferenceToEdit& edited, QWidget* parent);
