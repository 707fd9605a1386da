#include "shell/frame/GallerySaveDialog.h"

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

QString AskForProject(CGallerySaveDialog::Purpose purpose, const QString& currentPath, QWidget* parent)
{
    CGallerySaveDialog dialog(purpose, currentPath, parent);
    return dialog.exec() == QDialog::Accepted ? dialog.GetPath() : QString();
}
