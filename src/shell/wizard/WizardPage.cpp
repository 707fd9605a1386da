#include "shell/wizard/WizardPage.h"

#include <QWizard>

#include "shell/look/Icons.h"

void CWizardPage::MakeExterior(const QString& title)
{
    setTitle(title);
    setPixmap(QWizard::WatermarkPixmap, LoadPicture(QStringLiteral("wizard-side"), devicePixelRatioF()));
}

void CWizardPage::MakeInterior(const QString& title, const QString& subtitle)
{
    setTitle(title);
    setSubTitle(subtitle);
    setPixmap(QWizard::LogoPixmap, LoadPicture(QStringLiteral("wizard-header"), devicePixelRatioF()));
}
