#include "shell/panes/galleries/CoverMenu.h"

#include <QMenu>

#include "resources/StringTable.h"
#include "shell/look/Icons.h"

QMenu* MakeCoverMenu(const CoverMenuActions& actions, bool showsKeys, QWidget& parent)
{
    auto* const menu = new QMenu(&parent);
    menu->setObjectName(QStringLiteral("CoverMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const char* icon, const QString& text, const std::function<void()>& action) {
        menu->addAction(LoadIcon(QString::fromLatin1(icon)), text, &parent, action);
    };
    // The keys themselves are the frame's.
    const auto withKey = [showsKeys](StringId text, const char* key) {
        return showsKeys ? Text(text) + QLatin1Char('\t') +
                               QKeySequence(QLatin1String(key)).toString(QKeySequence::NativeText)
                         : Text(text);
    };
    add("gallery-inside", Text(StringId::GalleryMenuAdd), actions.addInside);
    add("gallery-above", Text(StringId::GalleryMenuInsert), actions.insertAbove);
    menu->addSeparator();
    add("edit-text", withKey(StringId::GalleryMenuRename, "F2"), actions.rename);
    add("duplicate", Text(StringId::GalleryMenuDuplicate), actions.duplicate);
    menu->addSeparator();
    add("remove", withKey(StringId::GalleryMenuDelete, "Del"), actions.remove);
    return menu;
}
