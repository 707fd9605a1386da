#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include <QString>

class CGalleryProject;

// The codes by which the views tell each other what has changed. A code doubles as the number of a menu
// command, so the numbers are fixed. The high bits say which views have to repaint.
enum class UpdateHint : int32_t {
    Deploy = 0x0410,
    RecentProjectChosen = 0x0413,
    CoverChanged = 0x1000,
    FolderChosen = 0x2401,
    FolderReady = 0x240F,
    StyleChosen = 0x4406,
    LayoutChosen = 0x4407,
    PictureMovedUp = 0x4409,
    PictureMovedDown = 0x440A,
    PictureTurnedLeft = 0x440C,
    LinkFollowed = 0x440D,
    TextEdited = 0x440E,
    ProjectRenamed = 0x4411,
    PictureTurnedRight = 0x4414,
    VisibilityChosen = 0x4415,
    AbsentPictureWanted = 0x4416,
    PictureAdded = 0x6408,
    PictureRemoved = 0x640B,
    ProjectReplaced = 0x7000,
    PicturesAdded = 0x7412,
    GalleryChosen = 0x7418,
    GalleryRemoved = 0x7419,
    ParentGalleryAdded = 0x741A,
    ChildGalleryAdded = 0x741B,
};

// What a change is about: nothing, an index, a link, or picture positions in ascending order.
using UpdateParameter = std::variant<std::monostate, int32_t, QString, std::vector<int32_t>>;

// Which views take notice of a hint. The galleries view and the pages view go by one bit each, the folder
// view by a list of hints.
bool ConcernsGalleriesView(UpdateHint hint);
bool ConcernsPagesView(UpdateHint hint);
bool ConcernsFolderView(UpdateHint hint);

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
