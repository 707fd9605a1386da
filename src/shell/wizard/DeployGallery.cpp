#include "shell/wizard/DeployGallery.h"

#include <QDesktopServices>
#include <QUrl>

#include "common/Platform.h"
#include "ftpengine/destinations/FTPDestinations.h"
#include "ftpengine/secrets/PasswordProtection.h"
#include "ftpengine/secrets/SystemKeyring.h"
#include "shell/wizard/WizardPropSheetDeploy.h"

void DeployGallery(CGalleryProject& project, CSettingsStore& settings, QWidget* parent)
{
    const CPasswordProtection protection(FindDataFolder(), FindMachineSettingsFolder());
    CSystemKeyring keyring;
    CFTPDestinations destinations(settings, protection, &keyring);
    DeployWizardServices services;
    services.destinations = &destinations;
    services.openSite = [](const QString& path) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    };
    services.recordsFolder = FindDeploymentRecordsFolder();
    services.sitesFolder = FindSitesFolder();
    services.access.trustFolder = FindTrustFolder();
    CWizardPropSheetDeploy(project, services, parent).exec();
}
