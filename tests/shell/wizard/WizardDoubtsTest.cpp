#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>

#include "WizardFixture.h"

// What the wizard asks before anything is written.

class WizardDoubts : public CWizardFixture {
protected:
    void OpenFolderPage()
    {
        recordsFolder = Path(QStringLiteral("records"));
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
