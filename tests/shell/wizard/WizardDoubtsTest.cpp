#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>

#include "WizardFixture.h"
#include "server/MemoryServer.h"

// What the wizard asks before anything is written.

class WizardDoubts : public CWizardFixture {
protected:
    CMemoryServer memory;

    // At a server in memory, in the directory "web".
    void OpenMemoryUpload()
    {
        openSession = [this](const SessionSetting& setting, SessionLog& log) {
            return memory.MakeOpener(setting.abortEvent)(log);
        };
        AddServer();
        fixture.GetProject().GetDeploySettings().ftp_directory = QStringLiteral("web");
        Open();
        Press("next");
        Press("next");
    }

    void OpenFolderPage()
    {
        Open();
        OnPage<QRadioButton>("folder").click();
        Press("next");
        OnPage<QLineEdit>("folder").setText(Path(QStringLiteral("site")));
    }

    // Takes the file of a picture away; returns its path.
    QString LosePicture()
    {
        const QString path = fixture.GetRoot().GetPictures().GetAt(0)->GetPath();
        EXPECT_TRUE(QFile::remove(path));
        return path;
    }

    QStringList Listed(const char* name) const
    {
        QStringList rows;
        const auto& list = OnPage<QListWidget>(name);
        for (int i = 0; i < list.count(); ++i) {
            rows += list.item(i)->text();
        }
        return rows;
    }
};

TEST_F(WizardDoubts, WithoutAnyThePageDoesNotComeUp)
{
    OpenFolderPage();
    Press("next");
    EXPECT_EQ(PageId(), 107);
}

TEST_F(WizardDoubts, MissingPicturesAreLeftOutOnlyIfThePersonAgrees)
{
    const QString lost = LosePicture();
    OpenFolderPage();
    Press("next");
    ASSERT_EQ(PageId(), 258);
    EXPECT_EQ(Listed("missing"), QStringList(lost));
    EXPECT_FALSE(OnPage<QListWidget>("strangers").isVisible());
    EXPECT_FALSE(CanPress("next"));
    ExpectUsable(*wizard, QStringLiteral("wizard-258-missing"));
    OnPage<QCheckBox>("missingAgreed").click();
    ASSERT_TRUE(CanPress("next"));
    Press("next");
    EXPECT_EQ(PageId(), 107);
    Press("next");
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_EQ(PageId(), 107);
    EXPECT_TRUE(QFile::exists(Path(QStringLiteral("site/index.html"))));
    // Nothing of the project is lost.
    EXPECT_EQ(fixture.GetRoot().GetPictures().GetCount(), 2);
}

TEST_F(WizardDoubts, APictureThatIsThereAgainIsNoDoubtAnyMore)
{
    const QString lost = LosePicture();
    OpenFolderPage();
    Press("next");
    ASSERT_EQ(PageId(), 258);
    Press("back");
    ASSERT_TRUE(QFile::copy(fixture.GetRoot().GetPictures().GetAt(1)->GetPath(), lost));
    Press("next");
    EXPECT_EQ(PageId(), 107);
}

TEST_F(WizardDoubts, FilesOfOthersAreReplacedOnlyIfThePersonAgrees)
{
    fixture.scratch.Write(QStringLiteral("site/index.html"), "mine");
    OpenFolderPage();
    Press("next");
    ASSERT_EQ(PageId(), 258);
    EXPECT_EQ(Listed("strangers").size(), 1);
    EXPECT_TRUE(Listed("strangers").front().endsWith(QStringLiteral("index.html")));
    EXPECT_FALSE(OnPage<QListWidget>("missing").isVisible());
    KeepPictures(*wizard, QStringLiteral("wizard-258-strangers"));
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("site/index.html")), "mine");
    OnPage<QCheckBox>("strangersAgreed").click();
    Press("next");
    Press("next");
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_NE(fixture.scratch.Read(QStringLiteral("site/index.html")), "mine");
}

TEST_F(WizardDoubts, BothQuestionsWantAnAnswer)
{
    LosePicture();
    fixture.scratch.Write(QStringLiteral("site/index.html"), "mine");
    OpenFolderPage();
    Press("next");
    ASSERT_EQ(PageId(), 258);
    KeepPictures(*wizard, QStringLiteral("wizard-258-both"));
    OnPage<QCheckBox>("strangersAgreed").click();
    EXPECT_FALSE(CanPress("next"));
    OnPage<QCheckBox>("missingAgreed").click();
    EXPECT_TRUE(CanPress("next"));
    // Agreed once is not agreed for another folder.
    Press("back");
    Press("next");
    EXPECT_FALSE(CanPress("next"));
}

TEST_F(WizardDoubts, FilesOfOthersOnAServerAreReplacedOnlyIfThePersonAgrees)
{
    const QString page = QStringLiteral("web/index.html");
    memory.Put(page, "somebody else's");
    OpenMemoryUpload();
    ASSERT_EQ(PageId(), 239);
    Press("next");
    WAIT_UNTIL(PageId() == 258);
    EXPECT_EQ(Listed("strangers"), QStringList(QStringLiteral("index.html")));
    EXPECT_FALSE(OnPage<QListWidget>("missing").isVisible());
    EXPECT_FALSE(CanPress("next"));
    EXPECT_EQ(memory.Find(page)->bytes, "somebody else's");
    KeepPictures(*wizard, QStringLiteral("wizard-258-server"));
    OnPage<QCheckBox>("strangersAgreed").click();
    Press("next");
    // The run goes on by itself up to the summary.
    WAIT_UNTIL(IsAsking());
    EXPECT_EQ(memory.Find(page)->bytes, "somebody else's");
    Press("next");
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_EQ(PageId(), 239);
    EXPECT_TRUE(memory.Find(page)->bytes.contains("<p>first</p>"));
}

TEST_F(WizardDoubts, AnotherDirectoryIsAnAnswerToFilesOfOthers)
{
    memory.Put(QStringLiteral("web/index.html"), "somebody else's");
    OpenMemoryUpload();
    Press("next");
    WAIT_UNTIL(PageId() == 258);
    Press("back");
    ASSERT_EQ(PageId(), 257);
    OnPage<QLineEdit>("directory").setText(QStringLiteral("web/photos"));
    Press("next");
    ASSERT_EQ(PageId(), 239);
    Publish();
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_EQ(memory.Find(QStringLiteral("web/index.html"))->bytes, "somebody else's");
    EXPECT_NE(memory.Find(QStringLiteral("web/photos/index.html")), nullptr);
}

TEST_F(WizardDoubts, WhatWasDecidedAboutMissingPicturesStaysDecidedAtTheServersQuestion)
{
    const QString lost = LosePicture();
    memory.Put(QStringLiteral("web/index.html"), "somebody else's");
    OpenMemoryUpload();
    ASSERT_EQ(PageId(), 258);
    OnPage<QCheckBox>("missingAgreed").click();
    Press("next");
    ASSERT_EQ(PageId(), 239);
    Press("next");
    WAIT_UNTIL(PageId() == 258);
    EXPECT_EQ(Listed("missing"), QStringList(lost));
    EXPECT_TRUE(OnPage<QCheckBox>("missingAgreed").isChecked());
    EXPECT_EQ(Listed("strangers"), QStringList(QStringLiteral("index.html")));
    OnPage<QCheckBox>("strangersAgreed").click();
    Press("next");
    WAIT_UNTIL(IsAsking());
    Press("next");
    WAIT_UNTIL(CanPress("finish"));
}

TEST_F(WizardDoubts, AFileThatComesBetweenTheLookAndTheRunIsAskedFor)
{
    OpenFolderPage();
    Press("next");
    ASSERT_EQ(PageId(), 107);
    fixture.scratch.Write(QStringLiteral("site/index.html"), "mine");
    Press("next");
    WAIT_UNTIL(PageId() == 258);
    EXPECT_EQ(Listed("strangers").size(), 1);
    OnPage<QCheckBox>("strangersAgreed").click();
    Press("next");
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_EQ(PageId(), 107);
    EXPECT_NE(fixture.scratch.Read(QStringLiteral("site/index.html")), "mine");
}
