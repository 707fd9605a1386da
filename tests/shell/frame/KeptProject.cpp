#include <cstdio>

#include <QCoreApplication>
#include <QTimer>

#include "common/Exceptions.h"
#include "common/Settings.h"
#include "common/TempFolder.h"
#include "document/project/GalleryProject.h"
#include "shell/frame/ProjectKeeper.h"

// A program without a window that is always at work on a project: counts in it each millisecond and says how
// far, until somebody ends it.
// kept_project FOLDER PROJECT DELAY: FOLDER holds the program's layouts; DELAY, in milliseconds, is how long
// a change may wait for being saved.

int main(int argumentCount, char** arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    const QStringList words = QCoreApplication::arguments();
    const QString folder = words.value(1) + QLatin1Char('/');
    const QString path = words.value(2);
    const auto settings = CreateIniSettings(folder + QStringLiteral("settings"), folder);
    CTempFolder tempFolder(folder);
    CGalleryProject project({.programFolder = folder + QStringLiteral("program/"),
                             .picturesFolder = folder,
                             .settings = settings.get(),
                             .tempFolder = &tempFolder});
    CProjectKeeper keeper(project,
                          {.failed = [](const CExceptionBase&) { std::exit(3); },
                           .succeededAgain =
                               [] {
                               }},
                          {.delay = std::chrono::milliseconds(words.value(3).toInt())});
    try {
        CProjectLock lock(path);
        if (lock.GetState() != CProjectLock::State::Held) {
            return 4;
        }
        keeper.Open(path, std::move(lock));
    } catch (const CExceptionBase&) {
        return 5;
    }
    // So much that the file is not written in one step.
    CGallery& gallery = *project.GetCurrentGallery();
    const QString object = QStringLiteral("gallery");
    gallery.SetObjectVariable(object, QStringLiteral("words"), CVariant(QString(300'000, QLatin1Char('w'))));
    // 0 before the first.
    int number = gallery.GetObjectVariable(object, QStringLiteral("count"))->GetInteger();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        gallery.SetObjectVariable(object, QStringLiteral("count"), CVariant(++number));
        keeper.MarkChanged();
        std::printf("%d\n", number);
        std::fflush(stdout);
    });
    timer.start(1);
    return QCoreApplication::exec();
}
