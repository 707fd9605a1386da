#pragma once

#include <QDialog>
#include <QString>

#include "shell/dialogs/GalleryNames.h"

class QLineEdit;
class QPushButton;

// Asks for the name and folder of a new project. Owned by its caller. Makes no file.
class CDlgNewGallery final : public QDialog {
    Q_OBJECT

public:
    // defaultPath: gives the folder, the extension, and the name to begin with, which gets a number if there
    // is such a file.
    CDlgNewGallery(const QString& defaultPath, QWidget* parent);

    // After Accepted: a path at which no file was.
    QString GetProjectPath() const { return path.Join(); }

    // Stays open, with a message, if the file exists.
    void accept() override;

private:
    void OnNameEdited();
    void OnBrowse();

    GalleryPath path;
    QLineEdit* name;
    QLineEdit* folder;
    QPushButton* ok = nullptr;
};
