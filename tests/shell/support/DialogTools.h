#pragma once

#include <functional>

#include <QTest>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

// A control of a dialog by its object name. A missing one ends the test program, since nothing else can be
// tried then.
template <class Control>
Control& Find(const QWidget& dialog, const char* name)
{
    auto* control = dialog.findChild<Control*>(QString::fromLatin1(name));
    if (!control) {
        qFatal("There is no control \"%s\".", name);
    }
    return *control;
}

void Click(const QWidget& dialog, const char* buttonName);

// Answers the next modal dialog that comes up, from within its own event loop. One that hangs is ended by the
// test's time limit.
class CModalAnswer {
public:
    explicit CModalAnswer(std::function<void(QWidget&)> answer);

    bool WasAsked() const { return asked; }

private:
    QTimer timer;
    QWidget* const former; // the dialog that asks, if it is a modal one
    bool asked = false;
};

// A person presses OK or Yes, or the button of that text, in a message box; the text is kept.
class CMessageAnswer {
public:
    explicit CMessageAnswer(const QString& button = QStringLiteral("OK"));

    const QString& GetText() const { return text; }
    const QString& GetTitle() const { return title; }

private:
    QString text;
    QString title;
    CModalAnswer answer;
};

// Shows the dialog on a screen of 1024 by 600 and looks for what a person without a mouse, or without sight,
// or with a small screen would miss; and keeps pictures of it in both palettes.
void ExpectUsable(QWidget& dialog, const QString& name);

// Keeps pictures of a widget as it stands, in a light and in a dark palette.
void KeepPictures(QWidget& widget, const QString& name);
