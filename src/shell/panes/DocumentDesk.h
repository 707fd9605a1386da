#pragma once

#include <cstdint>

#include "editing/Act.h"

class CGalleryProject;

// The frame as its views see it: the document that they show, and the road of all that a person changes in
// it. Outlives the views; screen's thread.
class CDocumentDesk {
public:
    virtual CGalleryProject& GetProject() = 0;

    // Applies the act; all views show what it has touched before this returns. False if nothing has changed:
    // also while a dialog or a deployment has the document to itself. Throws what the act throws, with the
    // document as it was.
    virtual bool Do(const Act& act) = 0;

    // The person goes to another gallery; all views follow. Nothing happens for an index that names none.
    virtual void ChooseGallery(int32_t index) = 0;

    // Something that is kept in the project's file and is no act has changed: where the person is, for
    // instance.
    virtual void MarkChanged() = 0;

protected:
    ~CDocumentDesk() = default;
};
