#pragma once

#include <vector>

#include "document/project/UpdateHints.h"

class CGalleryProject;

// Base of everything that shows the document: the three views. A view performs the changes that are its own
// in UpdateProject and passes every hint on to this base, which tells the other views. Main thread only.
class CGalleryProjectConsumer {
public:
    virtual ~CGalleryProjectConsumer() = default;

    // The document has changed as the hint says: show it.
    virtual void UpdateView(UpdateHint hint, CGalleryProject& project) = 0;

    // Change the document as the hint says. The base calls UpdateView on its consumers, in the order in which
    // they were added; the parameter does not travel on.
    virtual void UpdateProject(UpdateHint hint, const UpdateParameter& parameter, CGalleryProject& project);

    // Borrowed; has to outlive this object.
    void AddConsumer(CGalleryProjectConsumer& consumer) { consumers.push_back(&consumer); }

private:
    std::vector<CGalleryProjectConsumer*> consumers;
};
