#pragma once

#include <QDialog>
#include <QString>

class QLineEdit;
class QPushButton;

// The path of a project in its three pieces.
struct GalleryPath {
    QString folder;
    QString name;
    QString extension; // with its "."; empty if there is none

    QString Join() const;
};

// Pieces of a suggested path. The digits at the name's end are taken off, since a new number is looked for; a
// name without anything else becomes "My Vistorama".
GalleryPath SplitSuggestion(const QString& path);

// The name if no such file is there, else the name with the first number from 1 on of which this holds.
QString FindFreeName(const GalleryPath& path);

// Takes out the characters that file systems, scripts and links can't do with.
QString RemoveForbiddenCharacters(const QString& name);

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
