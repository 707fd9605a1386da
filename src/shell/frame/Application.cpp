#include "shell/frame/Application.h"

#include <clocale>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

#include <QDialog>
#include <QMessageBox>
#include <QSocketNotifier>

#include "common/Platform.h"
#include "common/ProgramIdentity.h"
#include "common/Settings.h"
#include "common/TempFolder.h"
#include "common/Text.h"
#include "common/Trace.h"
#include "shell/dialogs/FailureBox.h"
#include "shell/frame/CommandLine.h"
#include "shell/frame/MainFrame.h"
#include "shell/frame/MainFrameSettings.h"
#include "shell/look/ColourScheme.h"
#include "shell/look/Icons.h"
#include "shell/web/HTMLView.h"

namespace {

// A signal handler may do little more than write: the loop of messages reads at the other end.
int signalPipe[2] = {-1, -1};

void OnSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(signalPipe[1], &byte, 1);
}

bool HasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

// Before there is an application object.
QStringList ArgumentsOf(int argumentCount, char** arguments)
{
    QStringList texts;
    for (int i = 1; i < argumentCount; ++i) {
        texts += Widen(arguments[i]);
    }
    return texts;
}

QString CommandLineText()
{
    return QCoreApplication::arguments().mid(1).join(QLatin1Char(' '));
}

// Shows the failure that has ended the run, in a box without a parent and without a title.
void ShowLastResort(const QString& text)
{
    QMessageBox box(QMessageBox::Critical, QString(), text, QMessageBox::Ok);
    box.setObjectName(QStringLiteral("lastResort"));
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

int RunFrame(CApplication& application, CSettingsStore& settings)
{
    CTempFolder tempFolder(FindTemporaryFolder());
    CMainFrame frame({.programFolder = FindProgramFolder(),
                      .picturesFolder = FindPicturesFolder(),
                      .settings = &settings,
                      .tempFolder = &tempFolder,
                      .covers = {.folder = FindCoversFolder()}},
                     ParseCommandLinePath(CommandLineText()));
    frame.Start();
    const int exitCode = QApplication::exec();
    if (!application.GetFailureText().isEmpty()) {
        frame.GiveUpSaving(); // first: the box waits, and time goes by
        ShowLastResort(application.GetFailureText());
        frame.close();
    }
    return exitCode;
}

} // namespace

CApplication::CApplication(int& argumentCount, char** arguments) : QApplication(argumentCount, arguments)
{
    setApplicationName(QStringLiteral("vistorama"));
    setDesktopFileName(GetApplicationId());
    setWindowIcon(LoadProgramIcon());
    // Files are written and read with decimal points, whatever the user's language.
    std::setlocale(LC_NUMERIC, "C");
    CloseOnSignals();
}

CApplication::~CApplication() = default;

bool CApplication::notify(QObject* receiver, QEvent* event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const CExceptionBase& failure) {
        EndBy(failure);
    } catch (const std::exception& failure) {
        EndBy(CGenericException(Text(StringId::UnexpectedErrorCaption), Widen(failure.what()),
                                Text(StringId::UnexpectedErrorAdvice)));
    }
    return false;
}

void CApplication::EndBy(const CExceptionBase& failure)
{
    // The first one counts: others may follow from it.
    if (failureText.isEmpty()) {
        failureText = LastResortText(failure);
    }
    exit(EXIT_FAILURE);
}

void CApplication::CloseOnSignals()
{
    if (::pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    signalNotifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    connect(signalNotifier.get(), &QSocketNotifier::activated, this, [this] {
        // A window may refuse to close, and the next signal asks again.
        char bytes[16];
        while (::read(signalPipe[0], bytes, sizeof bytes) > 0) {
        }
        CloseInOrder();
    });
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        std::signal(number, OnSignal);
    }
}

// What is under way in a dialog, a deployment say, is cancelled by closing it and may take its time: then the
// other windows wait for it.
void CApplication::CloseInOrder()
{
    closeAllWindows();
    if (auto* const dialog = qobject_cast<QDialog*>(activeModalWidget())) {
        connect(dialog, &QDialog::finished, this, &CApplication::CloseInOrder,
                Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
    }
}

int RunApplication(int& argumentCount, char** arguments)
{
    if (const auto answer = FindCommandLineAnswer(ArgumentsOf(argumentCount, arguments))) {
        std::fputs(Narrow(answer->text).c_str(), answer->exitCode == 0 ? stdout : stderr);
        return answer->exitCode;
    }
    // Qt would end the program by a signal.
    if (!HasDisplay()) {
        std::fputs(Narrow(Text(StringId::NoDisplay)).c_str(), stderr);
        return EXIT_FAILURE;
    }
    PrepareHTMLViews();
    CApplication application(argumentCount, arguments);
    try {
        const std::shared_ptr<CSettingsStore> settings = CreateProgramSettings();
        InstallTrace(settings);
        ApplyColourScheme(CMainFrameSettings(*settings).GetString(QStringLiteral("ColourScheme")));
        return RunFrame(application, *settings);
    } catch (const CExceptionBase& failure) {
        ShowLastResort(LastResortText(failure));
    } catch (const std::exception& failure) {
        ShowLastResort(
            LastResortText(CGenericException(Text(StringId::UnexpectedErrorCaption), Widen(failure.what()),
                                             Text(StringId::UnexpectedErrorAdvice))));
    }
    return EXIT_FAILURE;
}
