#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "WizardFixture.h"
#include "shell/wizard/PropPageSelectFolder.h"

class DeployWizard : public CWizardFixture {};

TEST_F(DeployWizard, HasThePagesWithTheirTitles)
{
    Open();
    EXPECT_EQ(wizard->windowTitle(), QStringLiteral("Deploy Wizard"));
    EXPECT_EQ(wizard->startId(), 241);
    const struct {
        int id;
        const char* title;
        const char* subtitle; // of an interior page, which has a header picture; others have a side picture
    } rows[] = {
        {241, "Gallery deployment wizard.", ""},
        {256, "Folder path", "Please select a local folder path here."},
        {258, "Before publishing", "Nothing has been written yet. Please decide."},
        {107, "Deploying gallery to local disk folder.", ""},
        {237, "FTP connection", "Please configure FTP connection here."},
        {257, "Internet site gallery directory.", "Please select  Internet site gallery directory here."},
        {239, "Deploying gallery to Internet site.", ""},
        {245, "Gallery deployment has finished with errors.", ""},
    };
    EXPECT_EQ(wizard->pageIds().size(), 8);
    for (const auto& row : rows) {
        const QWizardPage* page = wizard->page(row.id);
        ASSERT_NE(page, nullptr) << row.id;
        EXPECT_EQ(page->title(), QString::fromLatin1(row.title));
        EXPECT_EQ(page->subTitle(), QString::fromLatin1(row.subtitle));
        const bool isInterior = !page->subTitle().isEmpty();
        EXPECT_EQ(page->pixmap(QWizard::WatermarkPixmap).isNull(), isInterior) << row.id;
        EXPECT_EQ(page->pixmap(QWizard::LogoPixmap).isNull(), !isInterior) << row.id;
    }
    const auto labels = wizard->currentPage()->findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
        return label->text() == QStringLiteral("Please select where you would like to deploy your gallery.");
    }));
}

TEST_F(DeployWizard, GoesOnBelowTheSidePictureInItsColour)
{
    Open();
    wizard->resize(900, 800);
    const QImage window = wizard->grab().toImage();
    const QPixmap picture = wizard->currentPage()->pixmap(QWizard::WatermarkPixmap);
    const QColor foot = picture.toImage().pixelColor(0, picture.height() - 1);
    EXPECT_EQ(window.pixelColor(1, picture.height() - 1), foot);
    EXPECT_EQ(window.pixelColor(1, picture.height() + 1), foot);
    EXPECT_EQ(window.pixelColor(1, 700), foot);
    EXPECT_EQ(window.pixelColor(picture.width() - 1, 700), foot);
}

TEST_F(DeployWizard, OffersANewConnectionAloneWhenNoneIsStored)
{
    fixture.GetProject().GetDeploySettings().destination_kind = 1;
    Open();
    const auto& connection = OnPage<QComboBox>("connection");
    ASSERT_EQ(connection.count(), 1);
    EXPECT_EQ(connection.itemText(0), QStringLiteral("New Internet connection"));
    EXPECT_TRUE(connection.isEnabled());
    EXPECT_FALSE(OnPage<QPushButton>("edit").isEnabled());
    EXPECT_FALSE(OnPage<QPushButton>("delete").isEnabled());
    EXPECT_FALSE(CanPress("back"));
    EXPECT_FALSE(CanPress("finish"));
    Press("next");
    EXPECT_EQ(PageId(), 237);
    Press("back");
    EXPECT_EQ(PageId(), 241);
}

TEST_F(DeployWizard, EnablesWhatTheChoiceNeeds)
{
    AddServer();
    Open();
    EXPECT_TRUE(OnPage<QRadioButton>("site").isChecked());
    EXPECT_EQ(OnPage<QComboBox>("connection").currentText(), QStringLiteral("My site"));
    EXPECT_TRUE(OnPage<QPushButton>("edit").isEnabled());
    EXPECT_TRUE(OnPage<QPushButton>("delete").isEnabled());
    OnPage<QComboBox>("connection").setCurrentIndex(1);
    EXPECT_FALSE(OnPage<QPushButton>("edit").isEnabled());
    OnPage<QComboBox>("connection").setCurrentIndex(0);
    OnPage<QRadioButton>("folder").click();
    EXPECT_FALSE(OnPage<QComboBox>("connection").isEnabled());
    EXPECT_FALSE(OnPage<QPushButton>("delete").isEnabled());
    Press("next");
    EXPECT_EQ(PageId(), 256);
    Press("back");
    OnPage<QRadioButton>("site").click();
    Press("next");
    EXPECT_EQ(PageId(), 257);
    Press("back");
    Click(*wizard->currentPage(), "edit");
    EXPECT_EQ(PageId(), 237);
}

TEST_F(DeployWizard, ChoosesTheLastEntryForAConnectionThatIsGone)
{
    AddServer();
    fixture.GetProject().GetDeploySettings().ftp_destination = 77;
    Open();
    EXPECT_EQ(OnPage<QComboBox>("connection").currentIndex(), 1);
}

TEST_F(DeployWizard, DeletesAConnectionOnYes)
{
    AddServer();
    Open();
    {
        const CMessageAnswer question(QStringLiteral("No"));
        Click(*wizard->currentPage(), "delete");
        EXPECT_EQ(question.GetText(), QStringLiteral("Delete Internet connection 'My site'?"));
        EXPECT_EQ(question.GetTitle(), QStringLiteral("Gallery deployment wizard"));
    }
    EXPECT_EQ(destinations.Enumerate().size(), 1u);
    {
        const CMessageAnswer question(QStringLiteral("Yes"));
        Click(*wizard->currentPage(), "delete");
    }
    EXPECT_TRUE(destinations.Enumerate().empty());
    EXPECT_EQ(OnPage<QComboBox>("connection").count(), 1);
    EXPECT_FALSE(OnPage<QPushButton>("delete").isEnabled());
}

TEST_F(DeployWizard, ClosesOnCancelAtEachStepAndKeepsNothing)
{
    const CDeploySettings before = Stored();
    const struct {
        const char* way; // controls of the pages and buttons of the wizard, in order
        int page;
    } rows[] = {{"", 241}, {"next", 256}, {"next folder next", 107}, {"site next", 237}};
    for (const auto& row : rows) {
        Open();
        for (const QString& step : QString::fromLatin1(row.way).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            if (step == QStringLiteral("next")) {
                Press("next");
            } else if (PageId() == 256) {
                OnPage<QLineEdit>("folder").setText(Path(QStringLiteral("other")));
            } else {
                OnPage<QRadioButton>("site").click();
            }
        }
        EXPECT_EQ(PageId(), row.page);
        QTest::keyClick(wizard.get(), Qt::Key_Escape);
        EXPECT_FALSE(wizard->isVisible());
        EXPECT_EQ(wizard->result(), QDialog::Rejected);
        wizard.reset();
        EXPECT_EQ(Stored(), before) << row.page;
    }
}

TEST_F(DeployWizard, TakesTheFolderThatIsTypedOrChosen)
{
    Open();
    Press("next");
    auto& folder = OnPage<QLineEdit>("folder");
    EXPECT_EQ(folder.maxLength(), 260);
    EXPECT_FALSE(CanPress("next"));
    folder.setText(QStringLiteral("   "));
    EXPECT_FALSE(CanPress("next"));
    fixture.scratch.Write(QStringLiteral("out/any.txt"), "");
    const CModalAnswer answer([&](QWidget& modal) {
        auto* folders = qobject_cast<QFileDialog*>(&modal);
        ASSERT_NE(folders, nullptr);
        EXPECT_EQ(folders->windowTitle(), QStringLiteral("Hypertext reference menu")); // kept so
        folders->setDirectory(Path(QStringLiteral("out")));
        folders->selectFile(Path(QStringLiteral("out")));
        static_cast<QDialog*>(folders)->accept();
    });
    Click(*wizard->currentPage(), "browse");
    EXPECT_TRUE(answer.WasAsked());
    EXPECT_EQ(folder.text(), Path(QStringLiteral("out")));
    Press("next");
    EXPECT_EQ(OnPage<QLineEdit>("folder").text(), Path(QStringLiteral("out")));
}

TEST_F(DeployWizard, MakesATypedFolderAbsolute)
{
    const QString home = QDir::homePath();
    const struct {
        QString typed;
        QString folder;
    } rows[] = {{QStringLiteral("/srv/site"), QStringLiteral("/srv/site")},
                {QStringLiteral(" /srv/site/ "), QStringLiteral("/srv/site")},
                {QStringLiteral("site"), home + QStringLiteral("/site")},
                {QStringLiteral("~"), home},
                {QStringLiteral("~/site"), home + QStringLiteral("/site")},
                {QStringLiteral("~other/site"), home + QStringLiteral("/~other/site")},
                {QStringLiteral("/srv/../etc/./x"), QStringLiteral("/etc/x")}};
    for (const auto& row : rows) {
        EXPECT_EQ(AbsoluteFolder(row.typed), row.folder);
    }
}

TEST_F(DeployWizard, IsUsableOnItsFirstPages)
{
    AddServer();
    Open();
    ExpectUsable(*wizard, QStringLiteral("wizard-241-destination"));
    OnPage<QRadioButton>("folder").click();
    Press("next");
    OnPage<QLineEdit>("folder").setText(QStringLiteral("/home/anna/site"));
    ExpectUsable(*wizard, QStringLiteral("wizard-256-folder"));
    Press("next");
    ExpectUsable(*wizard, QStringLiteral("wizard-107-deploy-folder"));
    Press("back");
    Press("back");
    OnPage<QRadioButton>("site").click();
    Press("next");
    ExpectUsable(*wizard, QStringLiteral("wizard-257-directory"));
    Press("next");
    ExpectUsable(*wizard, QStringLiteral("wizard-239-deploy-site"));
}

TEST_F(DeployWizard, ItsControlsHaveTheirTexts)
{
    Open();
    EXPECT_EQ(OnPage<QRadioButton>("folder").text(), QStringLiteral("&Folder on the local disk drive"));
    EXPECT_EQ(OnPage<QRadioButton>("site").text(), QStringLiteral("&Internet site"));
    EXPECT_EQ(OnPage<QPushButton>("edit").text(), QStringLiteral("Edit>"));
    EXPECT_EQ(OnPage<QPushButton>("delete").text(), QStringLiteral("Delete..."));
    QStringList labels;
    for (const QLabel* label : wizard->page(245)->findChildren<QLabel*>()) {
        labels += label->text();
    }
    for (const char* text : {"&Error description:", "Possible &reason:", "Proposed &solution:"}) {
        EXPECT_TRUE(labels.contains(QString::fromLatin1(text))) << text;
    }
}
