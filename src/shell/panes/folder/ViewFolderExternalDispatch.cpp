#include "shell/panes/folder/ViewFolderExternalDispatch.h"

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
    default:
        commands.DragImage(texts->at(0), texts->at(1));
        break;
    }
    return DispatchResult::Ok;
}
