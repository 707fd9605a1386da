#pragma once

#include "editing/EditHistory.h"

class CGalleryProject;

// What a view has to show anew.
struct ViewUpdate {
    enum class Cause {
        ProjectReplaced, // another project, or the same with everything looked at anew
        ProjectRenamed,
        GalleryChosen, // the person has gone to another gallery
        Edited,        // an act was done, taken back or done anew
    };

    Cause cause = Cause::ProjectReplaced;
    const Edited* edited = nullptr; // of an act; borrowed for the call
};

// What shows the document: the three views. Screen's thread.
class CGalleryProjectConsumer {
public:
    virtual void UpdateView(const ViewUpdate& update, CGalleryProject& project) = 0;

protected:
    ~CGalleryProjectConsumer() = default;
};
