#pragma once

#include <functional>
#include <vector>

#include <QAnyStringView>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QSize>

#include "ViewPage.h"
#include "support/ScratchFolder.h"
#include "support/VirtualDisplay.h"

// Menus of the menu bar, and an entry of a menu by its place: how many entries and separators are above it.
enum class MenuTitle { Gallery, Effects, Source };
struct MenuEntry {
    int entries = 0;
    int separators = 0;
};

// The buttons of the window's toolbar that tests press.
enum class ToolButton { Undo, Redo, Visibility };

// The desktop program as a person has it: the program itself on a display of its own, with a home of its own,
// used by mouse and keyboard. Whatever is waited for has a deadline, after which the test fails.
class CDesktopProgram {
public:
    explicit CDesktopProgram(QSize screen = QSize(1440, 900));
    ~CDesktopProgram();

    const CScratchFolder scratch;
    CVirtualDisplay display;

    QString Path(const QString& name) const { return scratch.Path(name); }
    QString GetHome() const { return Path(QStringLiteral("home")); }
    QString GetDefaultProject() const;
    // A copy of the sample project; returns the path of its file.
    QString CopySample(const QString& folder = QStringLiteral("sample")) const;
    // The program's own settings: "NAME=VALUE" lines.
    void WriteSettings(const QByteArray& lines) const;
    QByteArray ReadSettings() const;
    // The folder of layouts and styles for the next start; at first the program's own.
    void SetDataFolder(const QString& folder) { dataFolder = folder; }
    // A copy of the program's own layouts and styles, which the test may change.
    void UseOwnData();
    // A layout of one page in that copy.
    void WriteLayout(const QString& name, const QByteArray& page) const;

    // Starts the program and, unless a message comes up instead, waits for its page. The window
    // fills the screen.
    void Start(const QStringList& arguments);
    void StartWithMessage(const QStringList& arguments, const QString& messageTitle);
    void WaitForPage();
    // Asks the program to end, as a desktop does at the end of a session. Returns its exit code.
    int Terminate();
    // Ends it without notice, as a failure of the power does.
    void Kill();
    // Waits until it has ended by itself.
    int WaitForEnd();
    bool IsRunning();

    // --- Windows, by a part of their titles.

    bool WaitForWindow(const QString& title);
    bool WaitForWindowGone(const QString& title);
    QString GetTitle();
    // All that the program shows: open menus are windows as well.
    qsizetype CountWindows() const { return FindAllWindows().size(); }
    // Gives the keyboard to the window.
    void FocusWindow(const QString& title);
    // The one on top.
    void FocusAnyWindow();
    void TypeText(const QString& text);
    // As xdotool names them: "ctrl+n", "Return".
    void PressKeys(const QStringList& keys);
    void MovePointer(QPoint place);
    void Click(QPoint place);
    void Click(ToolButton button);
    // Opens a menu by mouse, then the menus of its entries but for the last one, which is chosen.
    void Choose(MenuTitle menu, const std::vector<MenuEntry>& entries);
    void DoubleClick(QPoint place);
    void RightClick(QPoint place);
    // A key that stays down, as xdotool names it: "ctrl".
    void HoldKey(const QString& key);
    void ReleaseKey(const QString& key);
    void Drag(QPoint from, QPoint to);
    void PressMouse();
    void ReleaseMouse();

    // --- The page of the pages view.

    // Until the expression is true in the page on the screen.
    bool WaitInPage(const QString& condition) { return page.WaitFor(condition); }
    // Until the page has its pictures, but for those that a browser gets only when one scrolls to them.
    bool WaitForPictures();
    QVariant InPage(const QString& expression) { return page.Ask(expression); }
    // The middle of an element, on the screen; the expression gives the element.
    QPoint PlaceOf(const QString& elementExpression) { return page.PlaceOf(elementExpression); }
    // From the middle of one element to that of another, as the page is scrolled.
    QPoint WayBetween(const QString& from, const QString& to);
    void ClickElement(const QString& elementExpression);
    // Points at an element and presses a button of the strip that comes up, by its tooltip.
    void PressStripButton(const QString& elementExpression, const QString& tip);
    // The same without the press; returns the button's place.
    QPoint PointAtStripButton(const QString& elementExpression, const QString& tip);

    // Of the screen, or of the window of this title.
    void TakePicture(const QString& name, const QString& title = QString()) const;

    // Of the browser control's remote debugging, for a look into other pages than that of the pages view.
    quint16 GetDebugPort() const { return debugPort; }

    // Until the function answers true; false at the deadline. patience: in milliseconds.
    static bool WaitFor(const std::function<bool()>& condition, int patience = 30'000);

private:
    void Launch(const QStringList& arguments);
    QString RunTool(const QStringList& arguments) const;
    QStringList FindWindows(const QString& title) const;
    QStringList FindAllWindows() const;
    QPoint CornerOf(const QString& window) const;

    QString dataFolder;
    QProcess process;
    quint16 debugPort = 0;
    CViewPage page;
};

// The expression for a picture of the page, by its title. The sample's pictures are titled like their files.
QString PictureOnPage(QAnyStringView title);
