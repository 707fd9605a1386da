#include "shell/panes/pages/ViewPagesExternalDispatch.h"

namespace {

constexpr int editText = 7;
constexpr int editReference = 8;
constexpr int dragImage = 9;
constexpr int findImage = 10;
constexpr int selectImages = 11;
constexpr int openMenu = 12;

} // namespace

QStringList CViewPagesExternalDispatch::GetMethodNames() const
{
    return {QStringLiteral("ChangeVisibility"), QStringLiteral("RotateImageRight"),
            QStringLiteral("RotateImageLeft"),  QStringLiteral("MoveImageUp"),
            QStringLiteral("MoveImageDown"),    QStringLiteral("DeleteImage"),
            QStringLiteral("EditText"),         QStringLiteral("EditReference"),
            QStringLiteral("DragImage"),        QStringLiteral("FindImage"),
            QStringLiteral("Select"),           QStringLiteral("OpenMenu")};
}

DispatchResult CViewPagesExternalDispatch::CallMethod(int dispid, const QVariantList& arguments)
{
    if (dispid == editText) {
        return CallEditText(arguments);
    }
    if (dispid == editReference) {
        return CallEditReference(arguments);
    }
    if (dispid == dragImage || dispid == selectImages) {
        return CallWithTexts(dispid, arguments);
    }
    if (dispid == openMenu) {
        return CallOpenMenu(arguments);
    }
    if (arguments.size() != 1) {
        return DispatchResult::BadParamCount;
    }
    const std::optional<QString> id = TextArgument(arguments[0]);
    if (!id) {
        return DispatchResult::BadVarType;
    }
    if (dispid == findImage) {
        commands.FindImage(*id);
        return DispatchResult::Ok;
    }
    using Commands = CViewPagesExternalDispatchCommands;
    static constexpr void (Commands::*methods[])(const QString&) = {
        &Commands::ChangeVisibility, &Commands::RotateImageRight, &Commands::RotateImageLeft,
        &Commands::MoveImageUp,      &Commands::MoveImageDown,    &Commands::DeleteImage,
    };
    (commands.*methods[dispid - 1])(*id);
    return DispatchResult::Ok;
}

DispatchResult CViewPagesExternalDispatch::CallEditText(const QVariantList& arguments)
{
    if (arguments.size() != 6) {
        return DispatchResult::BadParamCount;
    }
    const std::optional<QStringList> texts = TextArguments(arguments.mid(0, 3));
    const std::optional<int32_t> x = NumberArgument(arguments[3]);
    const std::optional<int32_t> y = NumberArgument(arguments[4]);
    const std::optional<bool> multiline = FlagArgument(arguments[5]);
    if (!texts || !x || !y || !multiline) {
        return DispatchResult::TypeMismatch;
    }
    commands.EditText({.property = texts->at(0),
                       .name = texts->at(1),
                       .text = texts->at(2),
                       .x = *x,
                       .y = *y,
                       .multiline = *multiline});
    return DispatchResult::Ok;
}

DispatchResult CViewPagesExternalDispatch::CallEditReference(const QVariantList& arguments)
{
    if (arguments.size() != 3) {
        return DispatchResult::BadParamCount;
    }
    const std::optional<QStringList> texts = TextArguments(arguments);
    if (!texts) {
        return DispatchResult::TypeMismatch;
    }
    commands.EditReference(texts->at(0), texts->at(1), texts->at(2));
    return DispatchResult::Ok;
}

DispatchResult CViewPagesExternalDispatch::CallWithTexts(int dispid, const QVariantList& arguments)
{
    if (arguments.size() != 2) {
        return DispatchResult::BadParamCount;
    }
    const std::optional<QStringList> texts = TextArguments(arguments);
    if (!texts) {
        return DispatchResult::TypeMismatch;
    }
    if (dispid == dragImage) {
        commands.DragImage(texts->at(0), texts->at(1));
    } else {
        commands.Select(texts->at(0), texts->at(1));
    }
    return DispatchResult::Ok;
}

DispatchResult CViewPagesExternalDispatch::CallOpenMenu(const QVariantList& arguments)
{
    if (arguments.size() != 3) {
        return DispatchResult::BadParamCount;
    }
    const std::optional<QString> id = TextArgument(arguments[0]);
    const std::optional<int32_t> x = NumberArgument(arguments[1]);
    const std::optional<int32_t> y = NumberArgument(arguments[2]);
    if (!id || !x || !y) {
        return DispatchResult::TypeMismatch;
    }
    commands.OpenMenu(*id, *x, *y);
    return DispatchResult::Ok;
}
