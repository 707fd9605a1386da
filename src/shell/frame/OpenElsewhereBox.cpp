#include "shell/frame/OpenElsewhereBox.h"

#include <QMessageBox>
#include <QPushButton>

#include "resources/StringTable.h"
#include "shell/frame/ProjectPath.h"

namespace {

QString Caption(const QString& projectPath, const QString& computer)
{
    const QString name = ProjectNameOf(projectPath);
    return computer.isEmpty() ? Text(StringId::ProjectOpenElsewhere, name)
                              : Text(StringId::ProjectOpenOnComputer, name, computer);
}

} // namespace

std::optional<CProjectLock> AcquireProjectLock(const QString& projectPath, QWidget* parent)
{
    CProjectLock lock(projectPath);
    if (lock.GetState() != CProjectLock::State::OpenElsewhere) {
        return lock;
    }
    const QString computer = lock.GetOtherComputer();
    QMessageBox box(parent);
    box.setObjectName(QStringLiteral("openElsewhere"));
    box.setIcon(QMessageBox::Question);
    box.setWindowTitle(Text(StringId::FailureTitle));
    box.setTextFormat(Qt::PlainText);
    box.setText(Caption(projectPath, computer));
    box.setInformativeText(Text(StringId::OpenElsewhereHint));
    auto* const readOnly = box.addButton(Text(StringId::OpenReadOnly), QMessageBox::AcceptRole);
    QPushButton* const anyway = computer.isEmpty()
                                    ? nullptr
                                    : box.addButton(Text(StringId::OpenAnyway), QMessageBox::DestructiveRole);
    box.setEscapeButton(box.addButton(QMessageBox::Cancel));
    box.setDefaultButton(readOnly);
    box.exec();
    if (anyway != nullptr && box.clickedButton() == anyway) {
        lock.Seize();
        return lock;
    }
    return box.clickedButton() == readOnly ? std::optional(std::move(lock)) : std::nullopt;
}
