#pragma once

#include <functional>
#include <vector>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

#include "DesktopProgram.h"
#include "FolderPane.h"
#include "GalleriesPane.h"

// Each act that a person has, by mouse and by keyboard, in the program itself: done, taken back, done anew
// and taken back again, with the saved file the same to the byte each time.
class CActs : public testing::Test {
protected:
    // In the gallery of mountains, with the folder of the first gallery's pictures.
    void StartInMountains();
    // gallery: its index in the sample; title: of one of its pictures, file: the name of that one's file.
    void StartIn(int gallery, const char* title, const char* file);

    // name: of the act, for the record of the times.
    void Do(const char* name, const std::function<void()>& act);
    // Does something that brings another page.
    void Await(const std::function<void()>& act);
    void AwaitKeys(const char* keys);

    // --- What an act consists of.

    // A button of a picture's strip, by its tooltip.
    void Strip(const char* title, const char* tip);
    // As xdotool names them, with blanks between.
    void Keys(const char* keys);
    // Menus of the menu bar by their letters, each open before the next key is pressed.
    void Menu(const char* keys);
    // Of the window with this title, once it is there. Each comes when the one before it has gone.
    void InDialog(const char* title, const char* keys);
    // Chooses a gallery in the dialog that asks for one, by the beginning of its name.
    void ChooseInDialog(const char* title, const char* letters);
    void WaitUntilGone(const char* title);
    // Adds the pictures to the selection by Ctrl and the mouse.
    void Select(const std::vector<const char*>& titles);
    bool ClearSelection();
    // Gives the keyboard to a picture of the page.
    void Focus(const char* title);
    void DragOntoPage(QPoint from, QPoint to);
    void DragOntoCover(QPoint from, int gallery);
    // The button goes down there and comes up when the drag is seen to have arrived.
    void Drag(QPoint from, QPoint to, const std::function<bool()>& hasArrived);

    QByteArray Read() const;
    // What is saved now and then by the command.
    bool WaitForSavedFile(const std::function<bool(const QByteArray& file)>& isRight);

    CDesktopProgram program;
    CFolderPane folder{program};
    CGalleriesPane tree{program};
    const QString project = program.CopySample();

private:
    void WriteBase(int gallery, const char* title, const char* file);
    bool TryToDrag(QPoint from, QPoint to, const std::function<bool()>& hasArrived);
    int CountMarks(); // -1 while the page has none yet

    QByteArray base; // the file as the program writes it when everything is taken back
};
