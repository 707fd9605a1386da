#include <csignal>
#include <random>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

#include "common/Exceptions.h"
#include "shell/frame/ProjectKeeper.h"
#include "support/ProjectFixture.h"

namespace {

constexpr int Runs = 200;
constexpr int Delay = 20; // milliseconds; a change is made in each

// Changes that may be lost: those of one delay, and what the timers lag behind.
constexpr int MostLost = 2 * Delay;

class KilledProgram : public testing::Test {
protected:
    CProjectFixture fixture;
    const QString path = fixture.scratch.Path(QStringLiteral("kept.gallery"));

    KilledProgram()
    {
        fixture.WriteLayout(QStringLiteral("one"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("one"), QStringLiteral("index.html"), "<html></html>");
        fixture.WriteStyle(QStringLiteral("plain"));
    }

    // Starts the program, lets it make so many changes more, and kills it. Returns the number of the last
    // change that it spoke of; -1 if it ended by itself.
    int RunAndKill(int changes)
    {
        QProcess program;
        program.start(QStringLiteral(KEPT_PROJECT_PROGRAM),
                      {fixture.scratch.Path(), path, QString::number(Delay)});
        int last = -1;
        for (int seen = 0; seen < changes;) {
            if (!program.canReadLine() && !program.waitForReadyRead(30'000)) {
                return -1;
            }
            while (program.canReadLine()) {
                last = program.readLine().trimmed().toInt();
                ++seen;
            }
        }
        ::kill(static_cast<pid_t>(program.processId()), SIGKILL);
        program.waitForFinished();
        while (program.canReadLine()) {
            last = program.readLine().trimmed().toInt();
        }
        return program.exitStatus() == QProcess::CrashExit ? last : -1;
    }

    // The number of the last change that is in the file.
    int ReadSavedCount()
    {
        CGalleryProject project(fixture.GetEnvironment());
        project.Load(path);
        const auto count = project.GetCurrentGallery()->GetObjectVariable(QStringLiteral("gallery"),
                                                                          QStringLiteral("count"));
        return count->GetInteger(); // 0 before the first
    }

    QStringList Leftovers() const
    {
        return QDir(fixture.scratch.Path())
            .entryList({QStringLiteral(".vistorama-*.tmp")}, QDir::Files | QDir::Hidden);
    }
};

} // namespace

// At any moment: while it changes the project, writes the temporary file, syncs it, or renames it.
TEST_F(KilledProgram, LosesOnlyItsLastChangesInTwoHundredRuns)
{
    std::mt19937 random(20'261'120);
    std::uniform_int_distribution<int> changes(1, 4 * Delay);
    int runsWithLoss = 0;
    int saved = 0;
    for (int run = 0; run < Runs; ++run) {
        const int before = saved;
        const int last = RunAndKill(changes(random));
        ASSERT_GT(last, before) << "run " << run;
        ASSERT_NO_THROW(saved = ReadSavedCount()) << "run " << run;
        ASSERT_LE(saved, last + 1) << "run " << run; // one that it could not speak of any more
        ASSERT_GE(saved, std::max(before, last - MostLost)) << "run " << run;
        runsWithLoss += saved < last ? 1 : 0;
    }
    EXPECT_GT(saved, Runs) << "next to nothing was saved";
    EXPECT_GT(runsWithLoss, Runs / 2) << "the moments are no moments between changes and saves";
    RecordProperty("leftovers", static_cast<int>(Leftovers().size()));
}

TEST_F(KilledProgram, WhatItLeftBehindIsRemovedLater)
{
    fixture.NewProject().Save(path);
    const QByteArray abandoned = ".vistorama-999999999-1.tmp";
    fixture.scratch.Write(QString::fromLatin1(abandoned), "half");
    QFile file(fixture.scratch.Path(QString::fromLatin1(abandoned)));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(
        file.setFileTime(QDateTime::currentDateTime().addSecs(-2 * 3600), QFileDevice::FileModificationTime));
    file.close();
    ASSERT_EQ(Leftovers().size(), 1);

    CGalleryProject project(fixture.GetEnvironment());
    CProjectKeeper keeper(project,
                          {[](const CExceptionBase&) {},
                           [] {
                           }},
                          {});
    keeper.Open(path, CProjectLock(path));
    EXPECT_EQ(Leftovers(), QStringList());
}
