#pragma once

#include <cstdint>

#include "shell/web/ExternalDispatchBase.h"

// The commands that the page of the pages view can call. The view implements them. id: of the <img> element
// of a picture.
class CViewPagesExternalDispatchCommands {
public:
    // A text of the page that is to be edited. x, y: where the person clicked, in pixels of the screen.
    struct TextToEdit {
        QString property; // "object.variable"
        QString name;     // of the element, for people
        QString text;     // as the page shows it
        int32_t x = 0;
        int32_t y = 0;
        bool multiline = false;
    };

    virtual void ChangeVisibility(const QString& element) = 0;
    virtual void RotateImageRight(const QString& id) = 0;
    virtual void RotateImageLeft(const QString& id) = 0;
    virtual void MoveImageUp(const QString& id) = 0;
    virtual void MoveImageDown(const QString& id) = 0;
    virtual void DeleteImage(const QString& id) = 0;
    virtual void EditText(const TextToEdit& edited) = 0;
    virtual void EditReference(const QString& name, const QString& hrefProperty,
                               const QString& textProperty) = 0;
    // The mouse has begun to drag a picture. look: the address of what the page shows of it.
    virtual void DragImage(const QString& id, const QString& look) = 0;
    // Of a picture that is not there.
    virtual void FindImage(const QString& id) = 0;
    // ids: one to a line. way: see CPageSelection::Select.
    virtual void Select(const QString& ids, const QString& way) = 0;
    // Of what can be done with a picture; id may be empty. x, y: in the view, in pixels.
    virtual void OpenMenu(const QString& id, int32_t x, int32_t y) = 0;

    // See CExternalDispatchBase::KnowsPage.
    virtual bool KnowsPage(int page, bool isCurrent) const = 0;

protected:
    ~CViewPagesExternalDispatchCommands() = default;
};

// window.external of the pages view. Owned by the view, which it borrows. Screen's thread.
class CViewPagesExternalDispatch final : public CExternalDispatchBase {
public:
    explicit CViewPagesExternalDispatch(CViewPagesExternalDispatchCommands& commands) : commands(commands) {}

    QStringList GetMethodNames() const override;
    bool KnowsPage(int page, bool isCurrent) const override { return commands.KnowsPage(page, isCurrent); }

protected:
    DispatchResult CallMethod(int dispid, const QVariantList& arguments) override;

private:
    DispatchResult CallEditText(const QVariantList& arguments);
    DispatchResult CallEditReference(const QVariantList& arguments);
    DispatchResult CallWithTexts(int dispid, const QVariantList& arguments);
    DispatchResult CallOpenMenu(const QVariantList& arguments);

    CViewPagesExternalDispatchCommands& commands;
};
