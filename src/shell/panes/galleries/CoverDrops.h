#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <variant>
#include <vector>

#include <QPoint>
#include <QStringList>

#include "editing/Act.h"
#include "shell/drag/DraggedPictures.h"

class CGalleryProject;
class CHTMLView;
class QDropEvent;
struct GalleriesPage;

// What is dragged over the galleries view and dropped there: galleries, which move in the tree, pictures of
// the page or of the folder, and files of other programs. The page shows where they would go. Owned by the
// view, on whose events it works; screen's thread.
class CCoverDrops final {
public:
    static constexpr int32_t CurrentGallery = -1;
    struct Services {
        CHTMLView& htmlView;
        const GalleriesPage& page; // that is on the screen
        std::function<CGalleryProject&()> getProject;
        std::function<void(const Act& act)> perform;
        // Files for a gallery; beside the covers they are for CurrentGallery.
        std::function<void(const QStringList& paths, int32_t gallery)> addFiles;
    };
    explicit CCoverDrops(Services services) : services(std::move(services)) {}

    // Each accepts the event if it brings something that the covers take.
    void Enter(QDropEvent& event) const;
    void Hover(QDropEvent& event) const;
    void Leave() const;
    void Drop(QDropEvent& event) const;

private:
    struct MovedGallery {
        int32_t index = 0;
    };
    // Of the gallery's page: from there they move or, with Ctrl held, are copied.
    struct PagePictures {
        int32_t gallery = 0;
        std::vector<int32_t> positions;
        bool areCopied = false;
    };
    struct Files {
        QStringList paths;
    };
    using Dragged = std::variant<std::monostate, MovedGallery, PagePictures, Files>;

    Dragged Read(const QDropEvent& event) const;
    Dragged Take(QDropEvent& event) const;
    QString ScriptFor(const Dragged& dragged, QPoint place) const;
    QString TakersOf(int32_t gallery) const;
    void Perform(const Dragged& dragged, const QString& target) const;
    void MoveGallery(int32_t gallery, const QString& target) const;

    const Services services;
    // What a page answers later must not come too late.
    const std::shared_ptr<int> life = std::make_shared<int>(0);
};
