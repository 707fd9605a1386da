#pragma once

#include <cstdint>
#include <functional>
#include <set>

#include <QString>
#include <QUndoStack>

#include "document/project/ProjectState.h"
#include "editing/Act.h"

class CGalleryProject;

// What an act has touched, or taking it back: what the views have to show anew.
struct Edited {
    enum class Way { Done, Undone, Redone };

    Way way = Way::Done;
    QString name;   // of the act
    QString notice; // likewise
    // Galleries of which something has changed, by index; those that have come, and those that are gone.
    std::set<int32_t> galleries;
    std::set<int32_t> pictureLists; // those of them whose pictures or children have changed
    std::set<int32_t> looks;        // those of them with another layout, page or style
    bool isTreeChanged = false;     // galleries have come, gone or moved, or have another name
    bool isOtherGallery = false;    // the current gallery is another one
};

// The road of every change of the document: applies acts and keeps the last hundred of them to be taken back
// and done anew, exactly. Taking back leads to the page on which the person was. Ends with the project. Owned
// by who owns the project, which it borrows; screen's thread.
class CEditHistory final {
public:
    static constexpr int StepCount = 100;
    using Listener = std::function<void(const Edited& edited)>;

    // The listener hears of each change when it is made.
    CEditHistory(CGalleryProject& project, Listener listener);

    // False if the act has changed nothing; it is no step then. Throws what the act throws, with the document
    // as it was.
    bool Do(const Act& act);

    // For the commands of a menu, and for undo and redo themselves.
    QUndoStack& GetStack() { return stack; }

    // Another project has taken the place of this one.
    void Clear();

private:
    class CStep;

    CGalleryProject& project;
    const Listener listener;
    ProjectState known; // of all galleries that were ever touched, as they were last seen
    QUndoStack stack;
};
