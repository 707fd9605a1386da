#include "shell/wizard/PropPageSelectFolder.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

QString AbsoluteFolder(const QString& typed)
{
    QString path = typed.trimmed();
    if (path == QStringLiteral("~") || path.startsWith(QStringLiteral("~/"))) {
        path = QStringLiteral(".") + path.mid(1);
    }
    return QDir::toNativeSeparators(QDir::cleanPath(QDir::home().absoluteFilePath(path)));
}

CPropPageSelectFolder::CPropPageSelectFolder(DeployWizardState& state)
    : CWizardPage(state), folder(new QLineEdit(this))
{
    MakeInterior(Text(StringId::FolderPathTitle), Text(StringId::FolderPathSubtitle));
    const QString label = Text(StringId::FolderPathLabel);
    NameControl(*folder, "folder", label);
    folder->setMaxLength(Limit);
    QPushButton* browse = MakeButton(QStringLiteral("..."), "browse", this);
    browse->setAccessibleName(Text(StringId::ChooseFolderName));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeLabel(label, *folder));
    auto* row = new QHBoxLayout;
    row->addWidget(folder);
    row->addWidget(browse);
    layout->addLayout(row);
    layout->addStretch();
    connect(folder, &QLineEdit::textChanged, this, &QWizardPage::completeChanged);
    connect(browse, &QPushButton::clicked, this, &CPropPageSelectFolder::OnBrowse);
}

void CPropPageSelectFolder::OnShown()
{
    folder->setText(state.job.settings.folder);
    folder->setFocus();
}

bool CPropPageSelectFolder::isComplete() const
{
    return !folder->text().trimmed().isEmpty();
}

bool CPropPageSelectFolder::validatePage()
{
    state.job.settings.folder = AbsoluteFolder(folder->text());
    return true;
}

void CPropPageSelectFolder::OnBrowse()
{
    const QString chosen =
        QFileDialog::getExistingDirectory(this, Text(StringId::FolderPickerCaption), folder->text());
    if (!chosen.isEmpty()) {
        folder->setText(QDir::toNativeSeparators(chosen));
    }
}
