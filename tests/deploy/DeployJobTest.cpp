#include "deploy/DeployJob.h"

#include <condition_variable>
#include <functional>
#include <mutex>

#include "common/FileSystem.h"
#include "document/galleries/Gallery.h"
#include "support/ProjectFixture.h"

namespace {

// Keeps the messages of a job as text.
class CRecordingTarget final : public CDeployTarget {
public:
    void Post(DeployMessage message) override
    {
        const std::lock_guard lock(mutex);
        messages += std::visit([](const auto& body) { return Describe(body); }, message);
        if (onMessage) {
            onMessage();
        }
        arrived.notify_all();
    }

    QStringList GetMessages()
    {
        const std::lock_guard lock(mutex);
        return messages;
    }

    void WaitForFirst()
    {
        std::unique_lock lock(mutex);
        arrived.wait(lock, [this] { return !messages.isEmpty(); });
    }

    std::function<void()> onMessage;

private:
    static QString Describe(const DEPLOY_PROGRESS& progress)
    {
        return QStringLiteral("%1 %2/%3")
            .arg(DEPLOY_PROGRESS::Number)
            .arg(progress.donePages)
            .arg(progress.totalPages);
    }
    static QString Describe(const DEPLOY_GENERATED&) { return QString::number(DEPLOY_GENERATED::Number); }
    static QString Describe(const DEPLOY_PREPARING&) { return QString::number(DEPLOY_PREPARING::Number); }

    std::mutex mutex;
    std::condition_variable arrived;
    QStringList messages;
};

class DeployJob : public testing::Test {
protected:
    DeployJob()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"p.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("p.html"),
                          "<%picture id=\"a\" width=\"20\" height=\"15\" href=\"\"%>");
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.NewProject();
    }

    void AddPictures(int count)
    {
        for (int i = 0; i < count; ++i) {
            fixture.GetRoot().AddPicture(fixture.WritePicture(QStringLiteral("%1.png").arg(i)));
        }
    }

    QString Site(const QString& name = QString()) const
    {
        return fixture.scratch.Path(QStringLiteral("site/") + name);
    }

    CProjectFixture fixture;
    const std::shared_ptr<CRecordingTarget> target = std::make_shared<CRecordingTarget>();
};

} // namespace

TEST_F(DeployJob, ADeploymentToAFolderReportsItsPagesAndItsEnd)
{
    AddPictures(3);
    CDeployJob job(fixture.GetProject());
    job.settings.folder = Site();
    job.StartGeneration(target);
    job.WaitFinished();
    EXPECT_FALSE(job.GetError().has_value());
    EXPECT_EQ(target->GetMessages().join(QStringLiteral(", ")),
              QStringLiteral("1025 1/3, 1025 2/3, 1025 3/3, 1026"));
    EXPECT_TRUE(FileExists(Site(QStringLiteral("p2.html"))));
    EXPECT_TRUE(FileExists(Site(QStringLiteral("pictures/22015.png"))));
    EXPECT_TRUE(job.GetUploadMap().empty());
    EXPECT_EQ(job.GetResult().images, 3);
    EXPECT_TRUE(fixture.GetProject().IsPreviewMode());
}

TEST_F(DeployJob, AGenerationForAnUploadListsWhatItMade)
{
    AddPictures(1);
    CDeployJob job(fixture.GetProject());
    job.temporaryFolder = Site();
    job.StartGeneration(target);
    job.WaitFinished();
    EXPECT_EQ(target->GetMessages().join(QStringLiteral(", ")), QStringLiteral("1025 1/1, 1027, 1026"));
    QStringList listed;
    for (const auto& [path, item] : job.GetUploadMap()) {
        listed += item.directory + QLatin1Char('|') + item.name;
    }
    EXPECT_EQ(listed.join(QLatin1Char(' ')),
              QStringLiteral("Blue|style.css Common|base.css |p.html pictures|02015.png"));
}

TEST_F(DeployJob, AFailureBecomesAnErrorOfThreeTextsAndTheLastMessage)
{
    const QString path = fixture.scratch.Write(QStringLiteral("photos/bad.jpg"), "text");
    fixture.GetRoot().AddPicture(path);
    CDeployJob job(fixture.GetProject());
    job.settings.folder = Site();
    job.StartGeneration(target);
    job.WaitFinished();
    ASSERT_TRUE(job.GetError().has_value());
    EXPECT_TRUE(job.GetError()->description.startsWith(QStringLiteral("Unexpected error occured.")));
    EXPECT_TRUE(job.GetError()->reason.contains(path)) << qPrintable(job.GetError()->reason);
    EXPECT_FALSE(job.GetError()->solution.isEmpty());
    EXPECT_EQ(target->GetMessages().back(), QStringLiteral("1026"));
    EXPECT_TRUE(fixture.GetProject().IsPreviewMode());
    EXPECT_FALSE(job.IsCancelled());
}

TEST_F(DeployJob, ATargetThatIsAFileIsNamed)
{
    const QString file = fixture.scratch.Write(QStringLiteral("site"), "x");
    CDeployJob job(fixture.GetProject());
    job.settings.folder = file;
    job.StartGeneration(target);
    job.WaitFinished();
    ASSERT_TRUE(job.GetError().has_value());
    EXPECT_EQ(job.GetError()->description, QStringLiteral("Could not create directory %1.").arg(file));
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("site")), "x");
}

TEST_F(DeployJob, CancelEndsTheRunWithoutAnError)
{
    AddPictures(200);
    CDeployJob job(fixture.GetProject());
    job.settings.folder = Site();
    target->onMessage = [&] {
        job.RequestCancel();
    };
    job.StartGeneration(target);
    target->WaitForFirst();
    job.Cancel();
    EXPECT_TRUE(job.IsCancelled());
    EXPECT_FALSE(job.GetError().has_value());
    EXPECT_LT(job.GetResult().pages, 200);
    EXPECT_EQ(target->GetMessages().back(), QStringLiteral("1026"));
}

// What it has not come to is no leftover.
TEST_F(DeployJob, ACancelledRunRemovesNothing)
{
    AddPictures(200);
    CDeployJob job(fixture.GetProject());
    job.settings.folder = Site();
    job.recordsFolder = fixture.scratch.Path(QStringLiteral("records"));
    job.StartGeneration(target);
    job.WaitFinished();
    const QStringList before = fixture.scratch.ListFiles();
    EXPECT_GE(before.filter(QStringLiteral("site/")).size(), 400);
    target->onMessage = [&] {
        job.RequestCancel();
    };
    job.StartGeneration(target);
    job.WaitFinished();
    EXPECT_TRUE(job.IsCancelled());
    EXPECT_LT(job.GetResult().pages, 200);
    EXPECT_EQ(fixture.scratch.ListFiles(), before);
}

// By the record that the run before has kept, though it was cancelled.
TEST_F(DeployJob, ARemovedPictureTakesItsFilesAlong)
{
    AddPictures(200);
    CDeployJob job(fixture.GetProject());
    job.settings.folder = Site();
    job.recordsFolder = fixture.scratch.Path(QStringLiteral("records"));
    const auto images = [&] {
        return fixture.scratch.ListFiles().filter(QStringLiteral("site/pictures/")).size();
    };
    target->onMessage = [&] {
        job.RequestCancel();
    };
    job.StartGeneration(target);
    job.WaitFinished();
    EXPECT_GT(images(), 0);
    target->onMessage = nullptr;
    for (const int left : {3, 2}) {
        while (fixture.GetRoot().GetPictures().GetCount() > left) {
            fixture.GetRoot().RemovePicture(0);
        }
        job.StartGeneration(target);
        job.WaitFinished();
        EXPECT_FALSE(job.GetError().has_value());
        EXPECT_EQ(images(), left);
    }
}

TEST_F(DeployJob, ATargetThatIsGoneIsNoDanger)
{
    AddPictures(2);
    CDeployJob job(fixture.GetProject());
    job.settings.folder = Site();
    job.StartGeneration(std::make_shared<CRecordingTarget>());
    job.WaitFinished();
    EXPECT_FALSE(job.GetError().has_value());
    EXPECT_EQ(job.GetResult().pages, 2);
}

TEST_F(DeployJob, AJobCanRunAgainAfterAnError)
{
    fixture.GetRoot().AddPicture(fixture.scratch.Write(QStringLiteral("photos/bad.jpg"), "text"));
    CDeployJob job(fixture.GetProject());
    job.settings.folder = Site();
    job.StartGeneration(target);
    job.WaitFinished();
    ASSERT_TRUE(job.GetError().has_value());
    fixture.GetRoot().RemovePicture(0);
    AddPictures(1);
    job.StartGeneration(target);
    job.WaitFinished();
    EXPECT_FALSE(job.GetError().has_value());
    EXPECT_EQ(job.GetResult().pages, 1);
}

TEST_F(DeployJob, TheChoicesAreStoredInTheProjectWhenAsked)
{
    CDeployJob job(fixture.GetProject());
    job.settings.folder = Site();
    job.settings.open_browser_after_deploy = false;
    EXPECT_FALSE(fixture.GetProject().GetDeploySettings() == job.settings);
    job.StoreSettings();
    EXPECT_TRUE(fixture.GetProject().GetDeploySettings() == job.settings);
}

TEST_F(DeployJob, TheSiteOfAnotherProjectInTheSameFolderStays)
{
    const auto deploy = [&] {
        CDeployJob job(fixture.GetProject());
        job.settings.folder = Site();
        job.recordsFolder = fixture.scratch.Path(QStringLiteral("records"));
        job.overwrite = true; // the pages of both have the same names
        job.StartGeneration(target);
        job.WaitFinished();
        EXPECT_FALSE(job.GetError().has_value());
    };
    AddPictures(1);
    fixture.GetProject().Save(fixture.scratch.Path(QStringLiteral("one.gallery")));
    deploy();
    ASSERT_TRUE(FileExists(Site(QStringLiteral("pictures/02015.png"))));
    fixture.NewProject();
    fixture.GetProject().Save(fixture.scratch.Path(QStringLiteral("two.gallery")));
    deploy();
    EXPECT_TRUE(FileExists(Site(QStringLiteral("pictures/02015.png"))));
}
