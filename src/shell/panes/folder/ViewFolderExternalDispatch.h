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
    // ids: one to a line. way: see ApplySelection.
    virtual void Select(const QString& ids, const QString& way) = 0;
    // The picture is to be added and, if it is selected, the others with it.
    virtual void TakeSelected(const QString& id) = 0;
    // Of what can be done with a picture; id may be empty. x, y: in the view, in pixels.
    virtual void OpenMenu(const QString& id, int32_t x, int32_t y) = 0;

    // See CExternalDispatchBase::KnowsPage.
    virtual bool KnowsPage(int page, bool isCurrent) const = 0;

protected:
    ~CViewFolderExternalDispatchCommands() = default;
};

// window.external of the folder view. Owned by the view, which it borrows. Screen's thread.
class CViewFolderExternalDispatch final : public CExternalDispatchBase {
public:
    explicit CViewFolderExternalDispatch(CViewFolderExternalDispatchCommands& commands) : commands(commands)
    {}

    QStringList GetMethodNames() const override;
    bool KnowsPage(int page, bool isCurrent) const override { return commands.KnowsPage(page, isCurrent); }

protected:
    DispatchResult CallMethod(int dispid, const QVariantList& arguments) override;

private:
    DispatchResult CallOpenMenu(const QVariantList& arguments);

    CViewFolderExternalDispatchCommands& commands;
};
