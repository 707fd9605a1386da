#include "shell/panes/folder/ViewFolderExternalDispatch.h"

namespace {

enum Method { AddImage = 1, AddAllImages, DragImage, Select, TakeSelected, OpenMenu };

} // namespace

QStringList CViewFolderExternalDispatch::GetMethodNames() const
{
    return {QStringLiteral("AddImage"), QStringLiteral("AddAllImages"), QStringLiteral("DragImage"),
            QStringLiteral("Select"),   QStringLiteral("TakeSelected"), QStringLiteral("OpenMenu")};
}

DispatchResult CViewFolderExternalDispatch::CallMethod(int dispid, const QVariantList& arguments)
{
    static constexpr qsizetype counts[] = {1, 0, 2, 2, 1, 3}; // of arguments
    if (arguments.size() != counts[dispid - 1]) {
        return DispatchResult::BadParamCount;
    }
    if (dispid == OpenMenu) {
        return CallOpenMenu(arguments);
    }
    const std::optional<QStringList> texts = TextArguments(arguments);
    if (!texts) {
        return DispatchResult::TypeMismatch;
    }
    switch (dispid) {
    case AddImage:
        commands.AddImage(texts->at(0));
        break;
    case AddAllImages:
        commands.AddAllImages();
        break;
    case DragImage:
        commands.DragImage(texts->at(0), texts->at(1));
        break;
    case Select:
        commands.Select(texts->at(0), texts->at(1));
        break;
    default:
        commands.TakeSelected(texts->at(0));
        break;
    }
    return DispatchResult::Ok;
}

DispatchResult CViewFolderExternalDispatch::CallOpenMenu(const QVariantList& arguments)
{
    const std::optional<QString> id = TextArgument(arguments[0]);
    const std::optional<int32_t> x = NumberArgument(arguments[1]);
    const std::optional<int32_t> y = NumberArgument(arguments[2]);
    if (!id || !x || !y) {
        return DispatchResult::TypeMismatch;
    }
    commands.OpenMenu(*id, *x, *y);
    return DispatchResult::Ok;
}
