#include "editing/EditHistory.h"

#include <algorithm>
#include <utility>

#include <QUndoCommand>

#include "document/project/GalleryProject.h"

namespace {

using Indexes = std::vector<int32_t>; // ascending

Indexes ListGalleries(const CGalleryProject& project)
{
    Indexes indexes;
    for (const auto& [index, gallery] : project.GetGalleries()) {
        if (gallery) {
            indexes.push_back(index);
        }
    }
    return indexes;
}

// Those that an act has made are not there in the state before it.
void AddMadeGalleries(const CGalleryProject& project, const Indexes& before, ProjectState& stateBefore)
{
    Indexes made;
    const Indexes now = ListGalleries(project);
    std::set_difference(now.begin(), now.end(), before.begin(), before.end(), std::back_inserter(made));
    for (const int32_t index : made) {
        stateBefore.galleries[index] = GalleryState();
    }
}

std::set<int32_t> IndexesOf(const ProjectState& state)
{
    std::set<int32_t> indexes;
    for (const auto& [index, gallery] : state.galleries) {
        indexes.insert(indexes.end(), index);
    }
    return indexes;
}

bool HasOtherChildren(const PictureListState& a, const PictureListState& b)
{
    const auto childrenOf = [](const PictureListState& list) {
        std::vector<int32_t> children;
        for (const PictureListState::Entry& entry : list.entries) {
            if (const auto* child = std::get_if<PictureListState::Child>(&entry)) {
                children.push_back(child->gallery);
            }
        }
        return children;
    };
    return childrenOf(a) != childrenOf(b);
}

// The name of a gallery is one of its own texts.
bool IsOtherInTree(const GalleryState& from, const GalleryState& to)
{
    return from.IsThere() != to.IsThere() ||
           (from.IsThere() &&
            (!(from.texts->own == to.texts->own) ||
             (from.pictures != to.pictures && HasOtherChildren(*from.pictures, *to.pictures))));
}

Edited Difference(const ProjectState& from, const ProjectState& to)
{
    Edited edited;
    edited.isOtherGallery = from.currentGallery != to.currentGallery;
    edited.isTreeChanged = from.rootGallery != to.rootGallery;
    for (const auto& [index, before] : from.galleries) {
        const GalleryState& after = to.galleries.at(index);
        if (before == after) {
            continue;
        }
        edited.galleries.insert(index);
        if (before.pictures != after.pictures) {
            edited.pictureLists.insert(index);
        }
        if (before.layout != after.layout) {
            edited.looks.insert(index);
        }
        edited.isTreeChanged = edited.isTreeChanged || IsOtherInTree(before, after);
    }
    return edited;
}

} // namespace

// What an act has made of the document, with both sides of it.
class CEditHistory::CStep final : public QUndoCommand {
public:
    CStep(CEditHistory& history, const Act& act, ProjectState before, ProjectState after)
        : QUndoCommand(act.name),
          history(history),
          notice(act.notice),
          before(std::move(before)),
          after(std::move(after))
    {}

    void undo() override { Go(after, before, Edited::Way::Undone); }

    // The stack calls it for a step that is new, too: that one is done already.
    void redo() override
    {
        if (std::exchange(isNew, false)) {
            Tell(before, after, Edited::Way::Done);
        } else {
            Go(before, after, Edited::Way::Redone);
        }
    }

private:
    void Go(const ProjectState& from, const ProjectState& to, Edited::Way way)
    {
        history.project.Restore(to, from);
        Tell(from, to, way);
    }

    void Tell(const ProjectState& from, const ProjectState& to, Edited::Way way)
    {
        for (const auto& [index, state] : to.galleries) {
            history.known.galleries[index] = state;
        }
        Edited edited = Difference(from, to);
        edited.way = way;
        edited.name = text();
        edited.notice = notice;
        history.listener(edited);
    }

    CEditHistory& history;
    const QString notice;
    const ProjectState before;
    const ProjectState after;
    bool isNew = true;
};

CEditHistory::CEditHistory(CGalleryProject& project, Listener listener)
    : project(project), listener(std::move(listener))
{
    stack.setUndoLimit(StepCount);
}

bool CEditHistory::Do(const Act& act)
{
    const Indexes galleries = ListGalleries(project);
    ProjectState before = project.GetState(act.galleries, known);
    try {
        act.apply(project);
    } catch (...) {
        AddMadeGalleries(project, galleries, before);
        project.Restore(before, project.GetState(IndexesOf(before), before));
        throw;
    }
    AddMadeGalleries(project, galleries, before);
    ProjectState after = project.GetState(IndexesOf(before), before);
    if (after.HasSameContent(before)) {
        return false;
    }
    stack.push(new CStep(*this, act, std::move(before), std::move(after)));
    return true;
}

void CEditHistory::Clear()
{
    stack.clear();
    known = {};
}
