#include "shell/web/ViewPagesExternalDispatch.h"

namespace {

constexpr int editText = 7;
constexpr int editReference = 8;
constexpr int dragImage = 9;

} // namespace

QStringList CViewPagesExternalDispatch::GetMethodNames() const
{
    return {QStringLiteral("ChangeVisibility"), QStringLiteral("RotateImageRight"),
            QStringLiteral("RotateImageLeft"),  QStringLiteral("MoveImageUp"),
            QStringLiteral("MoveImageDown"),    QStringLiteral("DeleteImage"),
            QStringLiteral("EditText"),         QStringLiteral("EditReference"),
            QStringLiteral("DragImage")};
}

DispatchResult CViewPagesExternalDispatch::CallMethod(int dispid, const QVariantList& arguments)
{
    if (dispid == editText) {
        return CallEditText(arguments);
    }
    if (dispid == editReference) {
        return CallEditReference(arguments);
    }
    if (dispid == dragImage) {
        return CallDragImage(arguments);
    }
    if (arguments.size() != 1) {
        return DispatchResult::BadParamCount;
    }
    QString id;
    if (!ConvertArgument(arguments[0], id)) {
        return DispatchResult::BadVarType;
    }
    using Commands = CViewPagesExternalDispatchCommands;
    static constexpr void (Commands::*methods[])(const QString&) = {
        &Commands::ChangeVisibility, &Commands::RotateImageRight, &Commands::RotateImageLeft,
        &Commands::MoveImageUp,      &Commands::MoveImageDown,    &Commands::DeleteImage,
    };
    (commands.*methods[dispid - 1])(id);
    return DispatchResult::Ok;
}

DispatchResult CViewPagesExternalDispatch::CallEditText(const QVariantList& arguments)
{
    if (arguments.size() != 6) {
        return DispatchResult::BadParamCount;
    }
    CViewPagesExternalDispatchCommands::TextToEdit edited;
    const bool converted =
        ConvertArgument(arguments[0], edited.property) && ConvertArgument(arguments[1], edited.name) &&
        ConvertArgument(arguments[2], edited.text) && ConvertArgument(arguments[3], edited.x) &&
        ConvertArgument(arguments[4], edited.y) && ConvertArgument(arguments[5], edited.multiline);
    if (!converted) {
        return DispatchResult::TypeMismatch;
    }
    commands.EditText(edited);
    return DispatchResult::Ok;
}

DispatchResult CViewPagesExternalDispatch::CallEditReference(const QVariantList& arguments)
{
    if (arguments.size() != 3) {
        return DispatchResult::BadParamCount;
    }
    QString name;
    QString hrefProperty;
    QString textProperty;
    if (!ConvertArgument(arguments[0], name) || !ConvertArgument(arguments[1], hrefProperty) ||
        !ConvertArgument(arguments[2], textProperty)) {
        return DispatchResult::TypeMismatch;
    }
    commands.EditReference(name, hrefProperty, textProperty);
    return DispatchResult::Ok;
}

DispatchResult CViewPagesExternalDispatch::CallDragImage(const QVariantList& arguments)
{
    QString id;
    QString look;
    if (arguments.size() != 2) {
        return DispatchResult::BadParamCount;
    }
    if (!ConvertArgument(arguments[0], id) || !ConvertArgument(arguments[1], look)) {
        return DispatchResult::TypeMismatch;
    }
    commands.DragImage(id, look);
    return DispatchResult::Ok;
}
