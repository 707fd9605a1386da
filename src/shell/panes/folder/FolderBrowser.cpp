#include "shell/panes/folder/FolderBrowser.h"

#include <QFileDialog>

#include "resources/StringTable.h"

QString AskForPictureFolder(const QString& current, QWidget* parent)
{
    QFileDialog dialog(parent, Text(StringId::SelectPictureFolder), current);
    dialog.setObjectName(QStringLiteral("SelectFolder"));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}
