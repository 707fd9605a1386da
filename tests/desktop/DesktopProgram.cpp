#include "DesktopProgram.h"

#include <csignal>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QStringList>
#include <QTcpServer>
#include <QThread>
#include <gtest/gtest.h>

#include "common/FileSystem.h"

namespace {

constexpr int Patience = 30'000; // milliseconds

// Between two looks at a state that no event tells of.
constexpr int Pause = 20; // milliseconds

quint16 FindFreePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

} // namespace

// The program has a page for each view; the pages view is the widest.
CDesktopProgram::CDesktopProgram(QSize screen)
    : display(screen),
      dataFolder(QStringLiteral(DATA_FOLDER)),
      page(*this, QStringLiteral("innerWidth > screen.width / 2"),
           QPoint(screen.width() / 3, screen.height() / 2))
{
    MakeDirectoryPath(GetHome());
    EXPECT_FALSE(display.GetName().isEmpty());
}

CDesktopProgram::~CDesktopProgram()
{
    if (IsRunning()) {
        process.kill();
        process.waitForFinished();
    }
}

QString CDesktopProgram::GetDefaultProject() const
{
    return GetHome() + QStringLiteral("/Documents/Vistorama/My Vistorama.gallery");
}

QString CDesktopProgram::CopySample(const QString& folder) const
{
    const QString copy = Path(folder);
    MakeDirectoryPath(copy);
    CopyDirectoryTree(QStringLiteral(DATA_FOLDER "/sample"), copy);
    return copy + QStringLiteral("/sample.gallery");
}

void CDesktopProgram::WriteSettings(const QByteArray& lines) const
{
    scratch.Write(QStringLiteral("home/.config/Corvane.ini"), "[Vistorama]\n" + lines);
}

QByteArray CDesktopProgram::ReadSettings() const
{
    return scratch.Read(QStringLiteral("home/.config/Corvane.ini"));
}

void CDesktopProgram::UseOwnData()
{
    dataFolder = Path(QStringLiteral("data"));
    for (const char* folder : {"/Templates", "/Styles"}) {
        const QString name = QString::fromLatin1(folder);
        MakeDirectoryPath(dataFolder + name);
        CopyDirectoryTree(QStringLiteral(DATA_FOLDER) + name, dataFolder + name);
    }
}

void CDesktopProgram::WriteLayout(const QString& name, const QByteArray& page) const
{
    const QString folder = QStringLiteral("data/Templates/");
    scratch.Write(folder + QStringLiteral("zz-%1.xml").arg(name),
                  "<template name=\"Zz\" folder=\"" + name.toUtf8() +
                      "\" group=\"standard\"><page file=\"index.html\" multipage=\"1\"/></template>");
    scratch.Write(folder + name + QStringLiteral("/index.html"), page);
}

void CDesktopProgram::Launch(const QStringList& arguments)
{
    debugPort = FindFreePort();
    PutDisplayIntoEnvironment(display.GetName());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_DOCUMENTS_DIR"}) {
        environment.remove(QString::fromLatin1(name));
    }
    environment.insert(QStringLiteral("HOME"), GetHome());
    environment.insert(QStringLiteral("VISTORAMA_DATA"), dataFolder);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    // The keyring of the desktop on which the tests run is none of theirs.
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
    environment.insert(QStringLiteral("QTWEBENGINE_REMOTE_DEBUGGING"),
                       QStringLiteral("127.0.0.1:%1").arg(debugPort));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(GetHome());
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(PROGRAM_FILE), arguments);
    ASSERT_TRUE(process.waitForStarted());
}

void CDesktopProgram::Start(const QStringList& arguments)
{
    Launch(arguments);
    ASSERT_TRUE(WaitForWindow(QStringLiteral("Vistorama - ")));
    WaitForPage();
}

void CDesktopProgram::WaitForPage()
{
    ASSERT_TRUE(WaitForWindow(QStringLiteral("Vistorama - ")));
    const QString window = FindWindows(QStringLiteral("Vistorama - ")).value(0);
    RunTool({QStringLiteral("windowmove"), window, QStringLiteral("0"), QStringLiteral("0")});
    RunTool({QStringLiteral("windowsize"), window, QStringLiteral("100%"), QStringLiteral("100%")});
    FocusWindow(QStringLiteral("Vistorama - "));
    ASSERT_TRUE(
        WaitInPage(QStringLiteral("document.images.length > 0 || document.body.innerText.length > 0")));
}

void CDesktopProgram::StartWithMessage(const QStringList& arguments, const QString& messageTitle)
{
    Launch(arguments);
    ASSERT_TRUE(WaitForWindow(messageTitle));
}

int CDesktopProgram::Terminate()
{
    ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
    return WaitForEnd();
}

void CDesktopProgram::Kill()
{
    process.kill();
    process.waitForFinished(Patience);
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
}

int CDesktopProgram::WaitForEnd()
{
    EXPECT_TRUE(!IsRunning() || process.waitForFinished(Patience));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return process.exitCode();
}

// Without an event loop the state changes only while somebody waits for it.
bool CDesktopProgram::IsRunning()
{
    process.waitForFinished(0);
    return process.state() == QProcess::Running;
}

bool CDesktopProgram::WaitFor(const std::function<bool()>& condition, int patience)
{
    const QDeadlineTimer deadline(patience);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QThread::msleep(Pause);
    }
    return true;
}

QString CDesktopProgram::RunTool(const QStringList& arguments) const
{
    QProcess tool;
    tool.setProcessEnvironment(process.processEnvironment());
    tool.start(QStringLiteral("xdotool"), arguments);
    tool.waitForFinished(Patience);
    return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
}

QStringList CDesktopProgram::FindWindows(const QString& title) const
{
    return RunTool(
               {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"), title})
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

// The lowest first; a box without a title is among them.
QStringList CDesktopProgram::FindAllWindows() const
{
    return RunTool({QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--class"),
                    QStringLiteral("vistorama")})
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

bool CDesktopProgram::WaitForWindow(const QString& title)
{
    return WaitFor([&] { return !IsRunning() || !FindWindows(title).isEmpty(); }) && IsRunning();
}

bool CDesktopProgram::WaitForWindowGone(const QString& title)
{
    return WaitFor([&] { return FindWindows(title).isEmpty(); });
}

QString CDesktopProgram::GetTitle()
{
    const QString window = FindWindows(QStringLiteral("Vistorama - ")).value(0);
    return RunTool({QStringLiteral("getwindowname"), window});
}

void CDesktopProgram::FocusWindow(const QString& title)
{
    const QString window = FindWindows(title).value(0);
    WaitFor([&] {
        RunTool({QStringLiteral("windowfocus"), window});
        return RunTool({QStringLiteral("getwindowfocus"), QStringLiteral("-f")}) == window;
    });
}

void CDesktopProgram::FocusAnyWindow()
{
    const QStringList windows = FindAllWindows();
    RunTool({QStringLiteral("windowfocus"), windows.value(windows.size() - 1)});
}

void CDesktopProgram::TypeText(const QString& text)
{
    RunTool(
        {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("1"), QStringLiteral("--"), text});
}

void CDesktopProgram::PressKeys(const QStringList& keys)
{
    RunTool(QStringList{QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("20")} + keys);
}

void CDesktopProgram::MovePointer(QPoint place)
{
    RunTool({QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y())});
}

void CDesktopProgram::Click(QPoint place)
{
    MovePointer(place);
    RunTool({QStringLiteral("click"), QStringLiteral("1")});
}

// The toolbar stands at the left of the window, which fills the screen. The eye is where it is for all
// layouts and styles of the sample, though their names have different widths.
void CDesktopProgram::Click(ToolButton button)
{
    switch (button) {
    case ToolButton::Undo:
        return Click(QPoint(152, 36));
    case ToolButton::Redo:
        return Click(QPoint(182, 36));
    case ToolButton::Visibility:
        return Click(QPoint(486, 36));
    }
}

void CDesktopProgram::Choose(MenuTitle menu, const std::vector<MenuEntry>& entries)
{
    const int place = menu == MenuTitle::Gallery ? 104 : menu == MenuTitle::Effects ? 160 : 216;
    qsizetype windows = CountWindows();
    Click(QPoint(place, 9));
    for (const MenuEntry& entry : entries) {
        EXPECT_TRUE(WaitFor([&] { return CountWindows() > windows; }));
        const QStringList open = FindAllWindows();
        windows = open.size();
        constexpr int entryHeight = 22;
        constexpr int separatorHeight = 2;
        Click(CornerOf(open.last()) + QPoint(50, 1 + entryHeight / 2 + entryHeight * entry.entries +
                                                     separatorHeight * entry.separators));
    }
}

QPoint CDesktopProgram::CornerOf(const QString& window) const
{
    // "X=10", "Y=20" among other lines.
    const QStringList lines =
        RunTool({QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window})
            .split(QLatin1Char('\n'));
    const auto value = [&lines](const char* name) {
        return lines.filter(QLatin1String(name)).value(0).section(QLatin1Char('='), 1).toInt();
    };
    return QPoint(value("X="), value("Y="));
}

void CDesktopProgram::DoubleClick(QPoint place)
{
    MovePointer(place);
    RunTool({QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
             QStringLiteral("--delay"), QStringLiteral("60"), QStringLiteral("1")});
}

void CDesktopProgram::RightClick(QPoint place)
{
    MovePointer(place);
    RunTool({QStringLiteral("click"), QStringLiteral("3")});
}

void CDesktopProgram::HoldKey(const QString& key)
{
    RunTool({QStringLiteral("keydown"), key});
}

void CDesktopProgram::ReleaseKey(const QString& key)
{
    RunTool({QStringLiteral("keyup"), key});
}

void CDesktopProgram::Drag(QPoint from, QPoint to)
{
    MovePointer(from);
    PressMouse();
    MovePointer((from + to) / 2);
    MovePointer(to);
    ReleaseMouse();
}

void CDesktopProgram::PressMouse()
{
    RunTool({QStringLiteral("mousedown"), QStringLiteral("1")});
}

void CDesktopProgram::ReleaseMouse()
{
    RunTool({QStringLiteral("mouseup"), QStringLiteral("1")});
}

bool CDesktopProgram::WaitForPictures()
{
    return WaitInPage(QStringLiteral("[...document.images].every(i => (i.complete && i.naturalWidth) || "
                                     "(i.loading == 'lazy' && (r => r.top > innerHeight || r.bottom < 0)"
                                     "(i.getBoundingClientRect())))"));
}

QPoint CDesktopProgram::WayBetween(const QString& from, const QString& to)
{
    const QString difference =
        QStringLiteral("((a, b) => Math.round(b.x + b.width / 2 - a.x - a.width / 2) + ' ' + "
                       "Math.round(b.y + b.height / 2 - a.y - a.height / 2))"
                       "(%1.getBoundingClientRect(), %2.getBoundingClientRect())");
    const QStringList way = InPage(difference.arg(from, to)).toString().split(QLatin1Char(' '));
    return QPoint(way.value(0).toInt(), way.value(1).toInt());
}

void CDesktopProgram::ClickElement(const QString& elementExpression)
{
    Click(PlaceOf(elementExpression));
}

void CDesktopProgram::PressStripButton(const QString& elementExpression, const QString& tip)
{
    Click(PointAtStripButton(elementExpression, tip));
}

// The strip comes up when the mouse enters the element. Its images are named after the element.
QPoint CDesktopProgram::PointAtStripButton(const QString& elementExpression, const QString& tip)
{
    return page.PointAtStripButton(
        QStringLiteral("[...document.images].filter(i => (%1).getAttribute('onmouseenter')"
                       ".includes('(' + i.id + ')'))")
            .arg(elementExpression),
        tip, [&] {
            const QPoint place = PlaceOf(elementExpression);
            MovePointer(place + QPoint(1, 0));
            MovePointer(place);
        });
}

void CDesktopProgram::TakePicture(const QString& name, const QString& title) const
{
    const QString window = title.isEmpty() ? QStringLiteral("root") : FindWindows(title).value(0);
    EXPECT_TRUE(display.TakePicture(QStringLiteral(SCREENSHOT_FOLDER "/%1.png").arg(name), window));
}

QString PictureOnPage(QAnyStringView title)
{
    return QStringLiteral(
               "[...document.querySelectorAll('figure img[onmouseenter]')].find(i => i.alt == '%1')")
        .arg(title.toString());
}
