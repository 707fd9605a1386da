#pragma once

#include <QFileDialog>

// Asks for the file of a project, to be saved or to be opened. Owned by its caller. Screen's thread.
class CGallerySaveDialog final : public QFileDialog {
public:
    enum class Purpose { Save, Open };

    // currentPath: where the dialog begins.
    CGallerySaveDialog(Purpose purpose, const QString& currentPath, QWidget* parent);

    // After Accepted.
    QString GetPath() const { return selectedFiles().value(0); }
};

// Asks a person for a folder with pictures. current: where the dialog begins. Empty if none was chosen.
QString AskForPictureFolder(const QString& current, QWidget* parent);

// Asks a person for the file of the picture of that name. current: where the dialog begins. Empty if none was
// chosen.
QString AskForPicture(const QString& name, const QString& current, QWidget* parent);
