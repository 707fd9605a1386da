#include "shell/web/ViewFolderExternalDispatch.h"

namespace {

enum Method { AddImage = 1, AddAllImages, DragImage };

} // namespace

QStringList CViewFolderExternalDispatch::GetMethodNames() const
{
    return {QStringLiteral("AddImage"), QStringLiteral("AddAllImages"), QStringLiteral("DragImage")};
}

DispatchResult CViewFolderExternalDispatch::CallMethod(int dispid, const QVariantList& arguments)
{
    static constexpr qsizetype counts[] = {1, 0, 2}; // of arguments
    if (arguments.size() != counts[dispid - 1]) {
        return DispatchResult::BadParamCount;
    }
    QString id;
    QString look;
    if ((arguments.size() > 0 && !ConvertArgument(arguments[0], id)) ||
        (arguments.size() > 1 && !ConvertArgument(arguments[1], look))) {
        return DispatchResult::TypeMismatch;
    }
    switch (dispid) {
    case AddImage:
        commands.AddImage(id);
        break;
    case AddAllImages:
        commands.AddAllImages();
        break;
    default:
        commands.DragImage(id, look);
        break;
    }
    return DispatchResult::Ok;
}
