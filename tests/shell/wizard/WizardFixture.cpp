#include "WizardFixture.h"

#include <QAbstractButton>
#include <QDir>
#include <QPlainTextEdit>

CWizardFixture::CWizardFixture()
{
    fixture.WriteLayout(QStringLiteral("a"),
                        "<page file=\"index.html\"/><page file=\"picture.html\" multipage=\"1\"/>");
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "<p>first</p>");
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("picture.html"),
                      "<%picture id=\"a\" width=\"20\" height=\"15\" href=\"\"%>");
    fixture.WriteStyle(QStringLiteral("Blue"));
    fixture.NewProject();
    for (const char* name : {"1.png", "2.jpg"}) {
        fixture.GetRoot().AddPicture(fixture.WritePicture(QString::fromLatin1(name)));
    }
}

DeployWizardServices CWizardFixture::MakeServices()
{
    DeployWizardServices services;
    services.destinations = &destinations;
    services.openSite = [this](const QString& path) {
        opened += path;
    };
    services.recordsFolder = Path(QStringLiteral("records"));
    services.sitesFolder = Path(QStringLiteral("sites"));
    services.access = {.timeouts = timeouts,
                       .trustFolder = Path(QStringLiteral("trusted")),
                       .mostSessions = 1, // the scripted server takes one after the other
                       .open = openSession};
    return services;
}

void CWizardFixture::Open()
{
    wizard = std::make_unique<CWizardPropSheetDeploy>(fixture.GetProject(), MakeServices(), nullptr);
    wizard->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(wizard.get()));
}

CFTPDestination CWizardFixture::AddServer(const QString& directory)
{
    CFTPDestination destination = destinations.Create(false);
    destination.connection = server.GetDestination(directory);
    destination.connection.displayName = QStringLiteral("My site");
    EXPECT_EQ(destinations.Save(destination), CFTPDestinations::SaveResult::Saved);
    CDeploySettings& settings = fixture.GetProject().GetDeploySettings();
    settings.destination_kind = 1;
    settings.ftp_destination = destination.key;
    return destination;
}

void CWizardFixture::OpenUpload(const QString& directory)
{
    AddServer();
    fixture.GetProject().GetDeploySettings().ftp_directory = directory;
    Open();
    Press("next");
    Press("next");
    ASSERT_EQ(PageId(), DeployPageId::DeployToFTP);
}

void CWizardFixture::OpenFolderDeployment()
{
    fixture.GetProject().GetDeploySettings().folder = Path(QStringLiteral("site"));
    Open();
    Press("next");
    Press("next");
    ASSERT_EQ(PageId(), DeployPageId::DeployToFolder);
}

bool CWizardFixture::IsAsking() const
{
    return PageId() == DeployPageId::DeployToFTP && CanPress("next") &&
           Find<QAbstractButton>(*wizard, "next").text() == QStringLiteral("&Publish");
}

void CWizardFixture::Publish()
{
    Press("next");
    WAIT_UNTIL(IsAsking());
    Press("next");
}

bool CWizardFixture::CanPress(const char* buttonName) const
{
    const auto& button = Find<QAbstractButton>(*wizard, buttonName);
    return button.isVisible() && button.isEnabled();
}

QStringList CWizardFixture::ErrorTexts() const
{
    QStringList texts;
    for (const char* name : {"description", "reason", "solution"}) {
        texts += OnPage<QPlainTextEdit>(name).toPlainText();
    }
    return texts;
}

QStringList CWizardFixture::TemporaryFiles() const
{
    return FilesBelow(fixture.tempFolder.GetPath(), {QStringLiteral("*.html")});
}
