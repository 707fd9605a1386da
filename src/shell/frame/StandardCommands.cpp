#include "shell/frame/StandardCommands.h"

#include <memory>

#include <QPrintDialog>
#include <QPrinter>
#include <QWebEnginePage>
#include <QWebEngineView>

namespace {

struct StandardCommand {
    CommandId id;
    QWebEnginePage::WebAction pageAction;
    const char* slot; // of Qt's text widgets
};

constexpr StandardCommand Commands[] = {
    {CommandId::Undo, QWebEnginePage::Undo, "undo"},     {CommandId::Cut, QWebEnginePage::Cut, "cut"},
    {CommandId::Copy, QWebEnginePage::Copy, "copy"},     {CommandId::Paste, QWebEnginePage::Paste, "paste"},
    {CommandId::Clear, QWebEnginePage::NoWebAction, ""},
};

// The browser control's inner widget has the focus, not the control itself.
QWebEngineView* FindWebView(QWidget* widget)
{
    while (widget != nullptr) {
        if (auto* view = qobject_cast<QWebEngineView*>(widget)) {
            return view;
        }
        widget = widget->parentWidget();
    }
    return nullptr;
}

// The printer has to outlive the printing, which goes on after the call.
void PrintPage(QWebEngineView& view)
{
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    QPrintDialog dialog(printer.get(), &view);
    if (dialog.exec() == QDialog::Accepted) {
        QObject::connect(
            &view, &QWebEngineView::printFinished, &view, [printer](bool) {}, Qt::SingleShotConnection);
        view.print(printer.get());
    }
}

} // namespace

void PerformStandardCommand(CommandId command, QWidget* focus)
{
    QWebEngineView* const view = FindWebView(focus);
    if (command == CommandId::Print) {
        if (view != nullptr) {
            PrintPage(*view);
        }
        return;
    }
    for (const StandardCommand& row : Commands) {
        if (row.id != command) {
            continue;
        }
        if (view != nullptr) {
            view->triggerPageAction(row.pageAction);
        } else if (focus != nullptr &&
                   focus->metaObject()->indexOfSlot((QByteArray(row.slot) + "()").constData()) >= 0) {
            QMetaObject::invokeMethod(focus, row.slot);
        }
    }
}
