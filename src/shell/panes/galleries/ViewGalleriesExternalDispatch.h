#pragma once

#include <cstdint>

#include "shell/web/ExternalDispatchBase.h"

// The commands that the page of the galleries view can call; each names a gallery by its index. The view
// implements them.
class CViewGalleriesExternalDispatchCommands {
public:
    virtual void AddChildGallery(int32_t id) = 0;
    virtual void AddParentGallery(int32_t id) = 0;
    virtual void RemoveGallery(int32_t id) = 0;
    virtual void SetCurrentGallery(int32_t id) = 0;
    // The person has begun to drag the cover.
    virtual void DragGallery(int32_t id) = 0;
    // The person asks for the cover's menu. x, y: in the page.
    virtual void OpenMenu(int32_t id, int32_t x, int32_t y) = 0;
    // See CExternalDispatchBase::KnowsPage.
    virtual bool KnowsPage(int page, bool isCurrent) const = 0;

protected:
    ~CViewGalleriesExternalDispatchCommands() = default;
};

// window.external of the galleries view. Owned by the view, which it borrows. Screen's thread.
class CViewGalleriesExternalDispatch final : public CExternalDispatchBase {
public:
    explicit CViewGalleriesExternalDispatch(CViewGalleriesExternalDispatchCommands& commands)
        : commands(commands)
    {}

    QStringList GetMethodNames() const override;
    bool KnowsPage(int page, bool isCurrent) const override { return commands.KnowsPage(page, isCurrent); }

protected:
    DispatchResult CallMethod(int dispid, const QVariantList& arguments) override;

private:
    CViewGalleriesExternalDispatchCommands& commands;
};
