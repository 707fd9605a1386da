#include "shell/dialogs/DlgNewGallery.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/FileSystem.h"
#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

QString GalleryPath::Join() const
{
    return JoinPath(folder, name + extension);
}

GalleryPath SplitSuggestion(const QString& path)
{
    QString name = ExtractLastName(path);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const QString extension = dot < 0 ? QString() : name.mid(dot);
    name.chop(extension.size());
    while (!name.isEmpty() && name.back() >= QLatin1Char('0') && name.back() <= QLatin1Char('9')) {
        name.chop(1);
    }
    if (name.isEmpty()) {
        name = Text(StringId::DefaultProjectName);
    }
    return {ExtractFolder(path), name, extension};
}

QString FindFreeName(const GalleryPath& path)
{
    GalleryPath tried = path;
    for (int number = 1; FileExists(tried.Join()); ++number) {
        tried.name = path.name + QString::number(number);
    }
    return tried.name;
}

QString RemoveForbiddenCharacters(const QString& name)
{
    static const QString forbidden = QStringLiteral("~!#$%^&*\\/\"'?<>+=|");
    QString allowed;
    for (const QChar character : name) {
        if (!forbidden.contains(character)) {
            allowed += character;
        }
    }
    return allowed;
}

CDlgNewGallery::CDlgNewGallery(const QString& defaultPath, QWidget* parent)
    : QDialog(parent),
      path(SplitSuggestion(defaultPath)),
      name(new QLineEdit(this)),
      folder(new QLineEdit(this))
{
    setWindowTitle(Text(StringId::NewGalleryTitle));
    path.name = FindFreeName(path);
    const QString nameLabel = QStringLiteral("&Name:");
    const QString folderLabel = QStringLiteral("&Folder:");
    NameControl(*name, "name", nameLabel);
    NameControl(*folder, "folder", folderLabel);
    name->setText(path.name);
    name->selectAll();
    folder->setText(QDir::toNativeSeparators(QDir::cleanPath(path.folder)));
    folder->setReadOnly(true);
    QPushButton* browse = MakeButton(QStringLiteral("&Browse..."), "browse", this);

    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    AddRow(*form, nameLabel, *name);
    auto* folderRow = new QHBoxLayout;
    folderRow->addWidget(folder);
    folderRow->addWidget(browse);
    form->addRow(MakeLabel(folderLabel, *folder), folderRow);
    layout->addLayout(form);
    layout->addStretch();
    ok = AddOkAndCancel(*this, *layout)->button(QDialogButtonBox::Ok);
    resize(480, sizeHint().height());
    name->setFocus();

    connect(name, &QLineEdit::textChanged, this, &CDlgNewGallery::OnNameEdited);
    connect(browse, &QPushButton::clicked, this, &CDlgNewGallery::OnBrowse);
}

void CDlgNewGallery::OnNameEdited()
{
    const QString allowed = RemoveForbiddenCharacters(name->text());
    if (allowed != name->text()) {
        const qsizetype place = RemoveForbiddenCharacters(name->text().left(name->cursorPosition())).size();
        name->setText(allowed); // comes back here
        name->setCursorPosition(static_cast<int>(place));
        return;
    }
    path.name = allowed;
    ok->setEnabled(!allowed.isEmpty());
}

void CDlgNewGallery::OnBrowse()
{
    const QString chosen =
        QFileDialog::getExistingDirectory(this, Text(StringId::SelectPictureFolder), path.folder);
    if (!chosen.isEmpty()) {
        path.folder = chosen;
        folder->setText(QDir::toNativeSeparators(chosen));
    }
}

void CDlgNewGallery::accept()
{
    if (FileExists(path.Join())) {
        QMessageBox::warning(this, windowTitle(), Text(StringId::GalleryExists, path.name));
        name->setFocus();
        return;
    }
    QDialog::accept();
}
