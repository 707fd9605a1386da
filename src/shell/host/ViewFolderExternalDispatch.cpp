#include "shell/host/ViewFolderExternalDispatch.h"

QStringList CViewFolderExternalDispatch::GetMethodNames() const
{
    return {QStringLiteral("AddImage"), QStringLiteral("AddAllImages")};
}

DispatchResult CViewFolderExternalDispatch::CallMethod(int dispid, const QVariantList& arguments)
{
    constexpr int addAllImages = 2;
    if (arguments.size() != (dispid == addAllImages ? 0 : 1)) {
        return DispatchResult::BadParamCount;
    }
    if (dispid == addAllImages) {
        commands.AddAllImages();
        return DispatchResult::Ok;
    }
    QString id;
    if (!ConvertArgument(arguments[0], id)) {
        return DispatchResult::TypeMismatch;
    }
    commands.AddImage(id);
    return DispatchResult::Ok;
}
