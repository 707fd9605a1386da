#include "shell/dialogs/FileDialogs.h"

#include "common/FileSystem.h"
#include "resources/StringTable.h"

CGallerySaveDialog::CGallerySaveDialog(Purpose purpose, const QString& currentPath, QWidget* parent)
    : QFileDialog(parent, QString(), ExtractFolder(currentPath),
                  Text(StringId::ImageGalleries) + QStringLiteral(" (*.gallery)"))
{
    setObjectName(QStringLiteral("projectFile"));
    const bool saves = purpose == Purpose::Save;
    setWindowTitle(Text(saves ? StringId::SaveProjectTitle : StringId::OpenProjectTitle));
    setAcceptMode(saves ? AcceptSave : AcceptOpen);
    setFileMode(saves ? AnyFile : ExistingFile);
    setDefaultSuffix(QStringLiteral("gallery"));
    if (saves) {
        selectFile(ExtractLastName(currentPath));
    }
}

QString AskForPictureFolder(const QString& current, QWidget* parent)
{
    QFileDialog dialog(parent, Text(StringId::SelectPictureFolder), current);
    dialog.setObjectName(QStringLiteral("SelectFolder"));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString AskForPicture(const QString& name, const QString& current, QWidget* parent)
{
    QFileDialog dialog(parent, Text(StringId::FindPictureTitle, name), current,
                       Text(StringId::PictureFilesFilter));
    dialog.setObjectName(QStringLiteral("SelectPicture"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}
