#pragma once

#include "shell/web/ExternalDispatchBase.h"

// The commands that the page of the folder view can call. The view implements them.
class CViewFolderExternalDispatchCommands {
public:
    // id: of the thumbnail's <img> element.
    virtual void AddImage(const QString& id) = 0;
    virtual void AddAllImages() = 0;
    // The mouse has begun to drag a thumbnail. look: the address of what the page shows of it.
    virtual void DragImage(const QString& id, const QString& look) = 0;

protected:
    ~CViewFolderExternalDispatchCommands() = default;
};

// window.external of the folder view. Owned by the view, which it borrows. Screen's thread.
class CViewFolderExternalDispatch final : public CExternalDispatchBase {
public:
    explicit CViewFolderExternalDispatch(CViewFolderExternalDispatchCommands& commands) : commands(commands)
    {}

    QStringList GetMethodNames() const override;

protected:
    DispatchResult CallMethod(int dispid, const QVariantList& arguments) override;

private:
    CViewFolderExternalDispatchCommands& commands;
};
