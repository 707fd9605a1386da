#pragma once

#include <functional>

#include <QJsonArray>
#include <QObject>

// The object of the program that the scripts of a view reach over the channel. Called inside the browser, so
// whoever takes its calls has them wait. Owned by the view's host; screen's thread.
class CScriptBridge final : public QObject {
    Q_OBJECT

public:
    struct Receivers {
        std::function<void(int revision, const QString& method, const QJsonArray& arguments)> called;
        std::function<void(int revision)> shown;
    };
    explicit CScriptBridge(Receivers receivers) : receivers(std::move(receivers)) {}

    // A call of window.external by the page of that revision.
    Q_INVOKABLE void call(int revision, const QString& method, const QJsonArray& arguments)
    {
        receivers.called(revision, method, arguments);
    }
    // The page has come onto the screen.
    Q_INVOKABLE void shown(int revision) { receivers.shown(revision); }

private:
    const Receivers receivers;
};
