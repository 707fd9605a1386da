#include "ActsFixture.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>

#include "SavedProject.h"
#include "common/FileSystem.h"

namespace {

// From a key to the page that shows what it did.
constexpr int timeForAKey = 2'000; // milliseconds
// From the press of the mouse to the mark where something would fall.
constexpr int timeForADrag = 5'000; // milliseconds

} // namespace

void CActs::StartInMountains()
{
    PointToFolder(project, {ExtractFolder(project)});
    StartIn(1, "High Pass", "High Pass.jpg");
    ASSERT_TRUE(folder.WaitForRows(12));
}

void CActs::StartIn(int gallery, const char* title, const char* file)
{
    ChooseGallery(project, gallery);
    program.Start({project});
    ASSERT_TRUE(tree.WaitForCurrent(gallery));
    // What the pages ask of a gallery is noted in it when they are shown for the first time.
    for (const int visited : {gallery == 0 ? 1 : 0, gallery}) {
        Await([&] { program.Click(tree.PlaceOf(visited)); });
        ASSERT_TRUE(tree.WaitForCurrent(visited));
    }
    ASSERT_TRUE(program.WaitInPage(PictureOnPage(title) + QStringLiteral(" != null")));
    WriteBase(gallery, title, file);
}

void CActs::WriteBase(int gallery, const char* title, const char* file)
{
    const auto waitForAngle = [&](int angle) {
        return WaitForSavedFile([&](const QByteArray&) {
            return SavedProject(project).galleries.at(gallery).Find(QLatin1String(file))->angle == angle;
        });
    };
    Await([&] { Strip(title, "Rotate clockwise"); });
    ASSERT_TRUE(waitForAngle(1));
    // The tree comes anew as well.
    tree.Ask(QStringLiteral("window.isOld_ = true"));
    AwaitKeys("ctrl+z");
    ASSERT_TRUE(tree.WaitFor(QStringLiteral("!window.isOld_")));
    ASSERT_TRUE(waitForAngle(0));
    base = Read();
}

void CActs::Do(const char* name, const std::function<void()>& act)
{
    SCOPED_TRACE(name);
    QElapsedTimer time;
    time.start();
    Await(act);
    ASSERT_TRUE(WaitForSavedFile([&](const QByteArray& file) { return file != base; }));
    RecordProperty(name, static_cast<int>(time.elapsed()));
    const QByteArray after = Read();
    const auto becomes = [&](const QByteArray& wanted) {
        return WaitForSavedFile([&](const QByteArray& file) { return file == wanted; });
    };
    AwaitKeys("ctrl+z");
    ASSERT_TRUE(becomes(base));
    AwaitKeys("ctrl+shift+z");
    ASSERT_TRUE(becomes(after));
    Await([&] { program.Click(ToolButton::Undo); });
    ASSERT_TRUE(becomes(base));
    Await([&] { program.Click(ToolButton::Redo); });
    ASSERT_TRUE(becomes(after));
    AwaitKeys("ctrl+z");
    ASSERT_TRUE(becomes(base));
    ASSERT_TRUE(program.WaitForPictures());
    ASSERT_TRUE(ClearSelection());
}

// Where nothing is selected the key leads out of the gallery, as on the site: it isn't pressed again before
// the page has had its time.
bool CActs::ClearSelection()
{
    QDeadlineTimer nextPress(0);
    return program.WaitFor([&] {
        const int marks = CountMarks();
        if (marks > 0 && nextPress.hasExpired()) {
            program.PressKeys({QStringLiteral("Escape")});
            nextPress.setRemainingTime(timeForAKey);
        }
        return marks == 0;
    });
}

void CActs::Await(const std::function<void()>& act)
{
    program.InPage(QStringLiteral("window.isOld_ = true"));
    act();
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("!window.isOld_")));
}

void CActs::AwaitKeys(const char* keys)
{
    Await([&] {
        program.FocusWindow(QStringLiteral("Vistorama - "));
        Keys(keys);
    });
}

void CActs::Strip(const char* title, const char* tip)
{
    program.PressStripButton(PictureOnPage(title), QString::fromLatin1(tip));
}

void CActs::Keys(const char* keys)
{
    program.PressKeys(QString::fromLatin1(keys).split(QLatin1Char(' ')));
}

void CActs::Menu(const char* keys)
{
    program.FocusWindow(QStringLiteral("Vistorama - "));
    const qsizetype before = program.CountWindows();
    const QStringList all = QString::fromLatin1(keys).split(QLatin1Char(' '));
    program.PressKeys({QStringLiteral("alt+") + all.first()});
    ASSERT_TRUE(program.WaitFor([&] { return program.CountWindows() > before; }));
    program.PressKeys(all.mid(1));
}

void CActs::InDialog(const char* title, const char* keys)
{
    ASSERT_TRUE(program.WaitForWindow(QString::fromLatin1(title))) << title;
    program.FocusWindow(QString::fromLatin1(title));
    Keys(keys);
}

void CActs::ChooseInDialog(const char* title, const char* letters)
{
    ASSERT_TRUE(program.WaitForWindow(QString::fromLatin1(title))) << title;
    program.FocusWindow(QString::fromLatin1(title));
    program.TypeText(QString::fromLatin1(letters));
    Keys("Return");
    WaitUntilGone(title);
}

void CActs::WaitUntilGone(const char* title)
{
    ASSERT_TRUE(program.WaitForWindowGone(QString::fromLatin1(title))) << title;
}

int CActs::CountMarks()
{
    return program
        .InPage(QStringLiteral(
            "window.previewSelection ? document.querySelectorAll('.preview-selected').length : -1"))
        .toInt();
}

void CActs::Select(const std::vector<const char*>& titles)
{
    program.HoldKey(QStringLiteral("ctrl"));
    int count = 0;
    for (const char* title : titles) {
        program.Click(program.PlaceOf(PictureOnPage(title)));
        ++count;
        EXPECT_TRUE(program.WaitFor([&] { return CountMarks() == count; })) << title;
    }
    program.ReleaseKey(QStringLiteral("ctrl"));
}

void CActs::Focus(const char* title)
{
    program.FocusWindow(QStringLiteral("Vistorama - "));
    program.InPage(PictureOnPage(title) + QStringLiteral(".closest('a').focus()"));
}

void CActs::DragOntoPage(QPoint from, QPoint to)
{
    Drag(from, to, [&] {
        return program.InPage(QStringLiteral("document.getElementById('preview_drop_mark') != null"))
            .toBool();
    });
}

void CActs::DragOntoCover(QPoint from, int gallery)
{
    Drag(from, tree.PlaceOf(gallery), [&] {
        return tree.Ask(QStringLiteral("document.querySelectorAll('.drop-lit').length")).toInt() == 1;
    });
}

void CActs::Drag(QPoint from, QPoint to, const std::function<bool()>& hasArrived)
{
    ASSERT_TRUE(program.WaitFor([&] { return TryToDrag(from, to, hasArrived); }));
    program.ReleaseMouse();
}

// A page that comes anew in the meantime knows of no drag: the button is let go where it went down.
bool CActs::TryToDrag(QPoint from, QPoint to, const std::function<bool()>& hasArrived)
{
    program.MovePointer(from);
    program.PressMouse();
    // A drag begins by small steps.
    for (int step = 1; step <= 10; ++step) {
        program.MovePointer(from + (to - from) * step / 10);
    }
    int moves = 0;
    const auto arrives = [&] {
        program.MovePointer(to + QPoint(++moves % 2, 0));
        return hasArrived();
    };
    const bool isThere = CDesktopProgram::WaitFor(arrives, timeForADrag);
    if (!isThere) {
        program.MovePointer(from);
        program.ReleaseMouse();
    }
    return isThere;
}

QByteArray CActs::Read() const
{
    QFile file(project);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool CActs::WaitForSavedFile(const std::function<bool(const QByteArray& file)>& isRight)
{
    return program.WaitFor([&] {
        program.PressKeys({QStringLiteral("ctrl+s")});
        return isRight(Read());
    });
}
