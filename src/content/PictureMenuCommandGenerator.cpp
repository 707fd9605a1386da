#include "content/PictureMenuCommandGenerator.h"

#include "common/Text.h"

namespace {

// Nothing inside is escaped, and a missing argument is an empty text: names come from layouts and are under
// their authors' control.
QString Quoted(const QString& text)
{
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

QString Quoted(const std::string* text)
{
    return Quoted(text ? Widen(*text) : QString());
}

// Null for a command that pages do not have.
QString PreviewMethod(int32_t command)
{
    switch (command) {
    case 277:
        return QStringLiteral("EditText");
    case 278:
        return QStringLiteral("MoveImageUp");
    case 279:
        return QStringLiteral("ChangeVisibility");
    case 280:
        return QStringLiteral("DeleteImage");
    case 281:
        return QStringLiteral("MoveImageDown");
    case 284:
        return QStringLiteral("EditReference");
    case 285:
        return QStringLiteral("RotateImageRight");
    case 286:
        return QStringLiteral("RotateImageLeft");
    case 310:
        return QStringLiteral("FindImage");
    default:
        return QString();
    }
}

} // namespace

void CFolderViewCommandGenerator::GenerateCommand(int32_t command, const std::string& id, QString& out) const
{
    if (command == 282) {
        out += QStringLiteral("AddImage('%1');hideObject(%1_row)").arg(Widen(id));
    } else if (command == 283) {
        out += QStringLiteral("AddAllImages()");
    }
}

void CPreviewCommandGenerator::GenerateCommand(int32_t command, const std::string& id, QString& out) const
{
    const QString method = PreviewMethod(command);
    if (!method.isNull()) {
        out += method + QLatin1Char('(') + Arguments(command, Widen(id)) + QLatin1Char(')');
    }
}

QString CPreviewCommandGenerator::Arguments(int32_t command, const QString& id) const
{
    const QLatin1Char comma(',');
    switch (command) {
    case 277:
        return Quoted(argument2) + comma + Quoted(argument1) + comma + id +
               QStringLiteral(".innerHTML, window.event.screenX,window.event.screenY,") +
               (multiline ? QStringLiteral("true") : QStringLiteral("false"));
    case 279:
        return Quoted(argument1);
    case 284:
        return Quoted(argument1) + comma + Quoted(argument2) + comma + Quoted(argument3);
    default:
        return Quoted(id);
    }
}

void CGalleriesPictureMenuCommandGenerator::GenerateCommand(int32_t command, const std::string&,
                                                            QString& out) const
{
    QString method;
    switch (command) {
    case 280:
        method = QStringLiteral("RemoveGallery(");
        break;
    case 298:
        method = QStringLiteral("AddChildGallery(");
        break;
    case 299:
        method = QStringLiteral("AddParentGallery(");
        break;
    default:
        return;
    }
    out += method + QString::number(galleryId) + QLatin1Char(')');
}
