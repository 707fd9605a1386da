#pragma once

#include <functional>

#include <QPoint>
#include <QRectF>
#include <QStringList>
#include <QWidget>

#include "shell/panes/pages/ViewPagesExternalDispatch.h"
#include "shell/web/HTMLView.h"

// Waits for events until the condition holds; false after a long time.
bool WaitUntil(const std::function<bool()>& condition);

// The answer of an expression in the page of a view.
QVariant Ask(CHTMLView& view, const QString& expression);
// Waits until the expression is true in the page.
bool WaitForPage(CHTMLView& view, const QString& condition);
// Of the first element that the selector finds, in the coordinates of the view.
QRectF RectOf(CHTMLView& view, const QString& selector);

// The mouse of a person, in the coordinates of the view.
void MoveMouse(CHTMLView& view, QPoint place);
void ClickMouse(CHTMLView& view, QPoint place, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                Qt::MouseButton button = Qt::LeftButton);
void DoubleClickMouse(CHTMLView& view, QPoint place);
// With the left button down, by several steps.
void DragMouse(CHTMLView& view, QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
// In the page that has the focus.
void PressKey(CHTMLView& view, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
// A key that pages have no use for, pressed by a person in the page that is on the screen.
void PressKey(CHTMLView& view);
// A script of the page that runs in answer to that key; returns when it has run.
void CallByKey(CHTMLView& view, const QString& script);

// What pages have called and which links were followed, one line each.
class CCallRecorder final : public CViewPagesExternalDispatchCommands, public CContentURLLoader {
public:
    QStringList lines;
    std::function<void()> onCall;

    void ChangeVisibility(const QString& element) override;
    void RotateImageRight(const QString& id) override;
    void RotateImageLeft(const QString& id) override;
    void MoveImageUp(const QString& id) override;
    void MoveImageDown(const QString& id) override;
    void DeleteImage(const QString& id) override;
    void EditText(const TextToEdit& edited) override;
    void EditReference(const QString& name, const QString& hrefProperty,
                       const QString& textProperty) override;
    void DragImage(const QString& id, const QString& look) override;
    void FindImage(const QString& id) override;
    void Select(const QString& ids, const QString& way) override;
    void OpenMenu(const QString& id, int32_t x, int32_t y) override;
    bool KnowsPage(int, bool isCurrent) const override { return isCurrent; }
    void LoadURL(const QString& url) override;

private:
    void Note(const QString& line);
};

// A window on the screen with one view of the browser that records what its pages do.
class CViewWindow {
public:
    explicit CViewWindow(const CHTMLView::Options& options = {}, QSize size = QSize(800, 600));

    CHTMLView& GetView() { return *view; }
    // Returns when the page is on the screen.
    void Show(const std::string& page, CHTMLView::ScrollPlace place = CHTMLView::ScrollPlace::Top);
    QVariant Ask(const QString& expression) { return ::Ask(*view, expression); }
    void CallByKey(const char* script) { ::CallByKey(*view, QString::fromUtf8(script)); }
    int GetShownCount() const { return shownCount; }

    CCallRecorder recorder;

private:
    QWidget window;
    CHTMLView* const view;
    CViewPagesExternalDispatch dispatch;
    int shownCount = 0;
};
