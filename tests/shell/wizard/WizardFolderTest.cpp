#include <sys/mount.h>
#include <unistd.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>

#include "WizardFixture.h"
#include "common/StopSignal.h"
#include "content/PageGeneration.h"

namespace {

class CNoProgress final : public CGenerationProgress {
    void OnPageDone(int32_t, int32_t) override {}
};

// A small disk, as long as this lives.
class CSmallDisk {
public:
    explicit CSmallDisk(const QString& folder) : folder(folder.toUtf8())
    {
        mounted = ::mount("tmpfs", this->folder.constData(), "tmpfs", 0, "size=8k") == 0;
    }
    ~CSmallDisk()
    {
        if (mounted) {
            ::umount2(folder.constData(), MNT_DETACH);
        }
    }
    bool IsThere() const { return mounted; }

private:
    const QByteArray folder;
    bool mounted = false;
};

} // namespace

class WizardFolder : public CWizardFixture {
protected:
    // The deployment that has begun has ended, well or not.
    bool HasEnded() const { return CanPress("finish"); }
};

TEST_F(WizardFolder, DeploysTheWholeSiteAndOpensIt)
{
    OpenFolderDeployment();
    EXPECT_EQ(OnPage<QCheckBox>("openBrowser").text(),
              QStringLiteral("&Open web browser window with a new gallery when finished"));
    EXPECT_TRUE(OnPage<QCheckBox>("openBrowser").isChecked());
    EXPECT_TRUE(CanPress("back"));
    Press("next");
    // The buttons go to a disabled Finish.
    EXPECT_EQ(PageId(), 107);
    EXPECT_FALSE(CanPress("next"));
    EXPECT_FALSE(CanPress("back"));
    EXPECT_FALSE(CanPress("finish"));
    WAIT_UNTIL(HasEnded());
    EXPECT_EQ(PageId(), 107);
    EXPECT_EQ(Status(), QStringLiteral("Deployed pages: 3 of 3. "));
    EXPECT_EQ(OnPage<QProgressBar>("progress").value(), 3);
    EXPECT_EQ(OnPage<QProgressBar>("progress").maximum(), 3);

    CNoProgress progress;
    const CStopSignal stop;
    GeneratePages(fixture.GetProject(), {Path(QStringLiteral("expected"))}, stop, progress);
    EXPECT_GT(FilesBelow(Path(QStringLiteral("site"))).size(), 5);
    EXPECT_EQ(FilesBelow(Path(QStringLiteral("site"))), FilesBelow(Path(QStringLiteral("expected"))));
    EXPECT_EQ(opened, QStringList(Path(QStringLiteral("site/index.html"))));
    KeepPictures(*wizard, QStringLiteral("wizard-107-done"));
    Press("finish");
    EXPECT_EQ(wizard->result(), QDialog::Accepted);
}

TEST_F(WizardFolder, StoresTheChoicesOnFinish)
{
    fixture.GetProject().GetDeploySettings().redeploy_mode = 0;
    const CDeploySettings before = Stored();
    Open();
    Press("next");
    OnPage<QLineEdit>("folder").setText(Path(QStringLiteral("other")));
    Press("next");
    OnPage<QCheckBox>("openBrowser").click();
    Press("next");
    WAIT_UNTIL(HasEnded());
    EXPECT_TRUE(opened.isEmpty());
    EXPECT_EQ(Stored(), before);
    Press("finish");
    EXPECT_EQ(Stored().folder, Path(QStringLiteral("other")));
    EXPECT_EQ(Stored().destination_kind, 0);
    EXPECT_FALSE(Stored().open_browser_after_deploy);
    EXPECT_EQ(Stored().redeploy_mode, before.redeploy_mode);
}

TEST_F(WizardFolder, KeepsNothingWhenCancelComesAfterTheEnd)
{
    OpenFolderDeployment();
    const CDeploySettings before = Stored();
    OnPage<QCheckBox>("openBrowser").click();
    Press("next");
    WAIT_UNTIL(HasEnded());
    Press("cancel");
    EXPECT_FALSE(wizard->isVisible());
    EXPECT_EQ(Stored(), before);
}

TEST_F(WizardFolder, StaysAliveAndCountsPages)
{
    for (int i = 3; i < 120; ++i) {
        fixture.GetRoot().AddPicture(fixture.WritePicture(QStringLiteral("%1.png").arg(i)));
    }
    OpenFolderDeployment();
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    timer.start(0);
    QList<int> values;
    QObject::connect(&OnPage<QProgressBar>("progress"), &QProgressBar::valueChanged,
                     [&](int value) { values += value; });
    Press("next");
    WAIT_UNTIL(HasEnded());
    EXPECT_GT(ticks, 1);
    EXPECT_GT(values.size(), 50);
    EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
}

TEST_F(WizardFolder, CancelsAGenerationWithoutAnErrorPage)
{
    for (int i = 3; i < 60; ++i) {
        fixture.GetRoot().AddPicture(fixture.WritePicture(QStringLiteral("%1.png").arg(i)));
    }
    OpenFolderDeployment();
    const CDeploySettings before = Stored();
    Press("next");
    Press("cancel");
    EXPECT_EQ(Status(), QStringLiteral("Cancelling. The files in progress are finished first."));
    Press("cancel"); // impatience changes nothing
    EXPECT_EQ(PageId(), 107);
    WAIT_UNTIL(!wizard->isVisible());
    EXPECT_EQ(wizard->result(), QDialog::Rejected);
    EXPECT_TRUE(opened.isEmpty());
    EXPECT_EQ(Stored(), before);
    EXPECT_TRUE(fixture.GetProject().IsPreviewMode());
}

TEST_F(WizardFolder, EndsAGenerationWhenTheWizardGoes)
{
    OpenFolderDeployment();
    Press("next");
    wizard.reset();
    EXPECT_TRUE(fixture.GetProject().IsPreviewMode());
}

TEST_F(WizardFolder, TellsOfAFolderThatCanNotBeMadeAndBeginsAnew)
{
    fixture.scratch.Write(QStringLiteral("file"), "no folder");
    const QString bad = Path(QStringLiteral("file/site"));
    fixture.GetProject().GetDeploySettings().folder = bad;
    const CDeploySettings before = Stored();
    Open();
    Press("next");
    Press("next");
    Press("next");
    WAIT_UNTIL(PageId() == 245);
    EXPECT_EQ(ErrorTexts().first(),
              QStringLiteral("Could not create directory %1.").arg(Path(QStringLiteral("file"))));
    EXPECT_FALSE(ErrorTexts().at(1).isEmpty());
    EXPECT_FALSE(ErrorTexts().at(2).isEmpty());
    EXPECT_TRUE(CanPress("back"));
    EXPECT_TRUE(CanPress("finish"));
    ExpectUsable(*wizard, QStringLiteral("wizard-245-error"));

    Press("back");
    EXPECT_EQ(PageId(), 241);
    EXPECT_FALSE(CanPress("back"));
    Press("next");
    EXPECT_EQ(OnPage<QLineEdit>("folder").text(), bad); // the choices are kept
    OnPage<QLineEdit>("folder").setText(Path(QStringLiteral("site")));
    Press("next");
    EXPECT_TRUE(CanPress("back"));
    EXPECT_EQ(Status(), QString());
    Press("next");
    WAIT_UNTIL(HasEnded());
    EXPECT_EQ(PageId(), 107);
    Press("finish");
    EXPECT_NE(Stored(), before);
}

TEST_F(WizardFolder, StoresNothingOnTheFinishOfTheErrorPage)
{
    fixture.scratch.Write(QStringLiteral("file"), "no folder");
    Open();
    const CDeploySettings before = Stored();
    Press("next");
    OnPage<QLineEdit>("folder").setText(Path(QStringLiteral("file/site")));
    Press("next");
    Press("next");
    WAIT_UNTIL(PageId() == 245);
    Press("finish");
    EXPECT_EQ(wizard->result(), QDialog::Accepted);
    EXPECT_EQ(Stored(), before);
}

TEST_F(WizardFolder, ShowsTheTextsOfABrokenLayout)
{
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "<%nonsense%>");
    OpenFolderDeployment();
    Press("next");
    WAIT_UNTIL(PageId() == 245);
    EXPECT_EQ(ErrorTexts().first(), QStringLiteral("Template parsing error occured."));
    EXPECT_TRUE(ErrorTexts().at(1).contains(QStringLiteral("nonsense")));
}

TEST_F(WizardFolder, TellsOfAFullDisk)
{
    fixture.scratch.Write(QStringLiteral("site/any.txt"), "");
    const CSmallDisk disk(Path(QStringLiteral("site")));
    if (!disk.IsThere()) {
        GTEST_SKIP() << "Only an administrator can bring a disk of his own.";
    }
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), QByteArray(100000, 'x'));
    OpenFolderDeployment();
    Press("next");
    WAIT_UNTIL(PageId() == 245);
    EXPECT_TRUE(ErrorTexts().first().contains(Path(QStringLiteral("site"))))
        << qPrintable(ErrorTexts().first());
    EXPECT_EQ(ErrorTexts().at(2), QStringLiteral("Please free some disk space and try again."));
}

TEST_F(WizardFolder, NamesPicturesThatWerePublishedInPart)
{
    fixture.WritePicture(QStringLiteral("2.jpg"), QSize(1600, 1200));
    QByteArray bytes = fixture.scratch.Read(QStringLiteral("photos/2.jpg"));
    bytes.truncate(bytes.size() * 2 / 3);
    fixture.scratch.Write(QStringLiteral("photos/2.jpg"), bytes);
    OpenFolderDeployment();
    Press("next");
    WAIT_UNTIL(HasEnded());
    EXPECT_EQ(PageId(), 107);
    EXPECT_TRUE(OnPage<QPlainTextEdit>("warnings").isVisible());
    EXPECT_TRUE(OnPage<QPlainTextEdit>("warnings").toPlainText().contains(QStringLiteral("2.jpg")));
    KeepPictures(*wizard, QStringLiteral("wizard-107-warnings"));
}
