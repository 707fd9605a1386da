#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <QString>

#include "shell/frame/Commands.h"

class CDocumentDesk;
class CViewFolder;
class CViewGalleries;
class CViewPages;
class QWidget;

// The commands on the pictures that are selected, or on the one that has the focus, in the view where the
// person is; to delete means the gallery in the view of galleries. Owned by the frame; screen's thread.
class CPictureCommands final {
public:
    struct Services {
        CDocumentDesk& desk;
        CViewPages& pages;
        CViewFolder& folder;
        CViewGalleries& galleries;
        QWidget& window;                                                  // under which dialogs open
        std::function<void(const QString& text)> say;                     // in the status bar
        std::function<void(const std::function<void()>& action)> attempt; // tells of what it throws
    };
    // All are borrowed.
    explicit CPictureCommands(Services services) : services(std::move(services)) {}

    // Others do nothing: those that only open their menus, and numbers that are no command.
    void Perform(CommandId command);

private:
    using Positions = std::vector<int32_t>;

    void PerformInFolder(CommandId command);
    void EditTexts();
    void PerformOn(CommandId command, const Positions& positions);
    void Copy(const Positions& positions);
    void SayCopied(int count);

    const Services services;
};
