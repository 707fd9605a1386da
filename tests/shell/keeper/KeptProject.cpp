#include <cstdio>

#include <QCoreApplication>
#include <QTimer>

#include "common/Exceptions.h"
#include "common/Settings.h"
#include "common/TempFolder.h"
#include "document/GalleryProject.h"
#include "shell/frame/ProjectKeeper.h"

// A program without a window that is always at work on a project: adds a picture each millisecond and says
// which, until somebody ends it.
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
                          std::chrono::milliseconds(words.value(3).toInt()));
    try {
        CProjectLock lock(path);
        if (lock.GetState() != CProjectLock::State::Held) {
            return 4;
        }
        keeper.Open(path, std::move(lock));
    } catch (const CExceptionBase&) {
        return 5;
    }
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        CGallery& gallery = *project.GetCurrentGallery();
        const int number = gallery.GetPictures().GetCount();
        gallery.AddPicture(QStringLiteral("/photos/%1.jpg").arg(number));
        keeper.MarkChanged();
        std::printf("%d\n", number + 1);
        std::fflush(stdout);
    });
    timer.start(1);
    return QCoreApplication::exec();
}
