#include "shell/panes/galleries/ViewGalleriesExternalDispatch.h"

QStringList CViewGalleriesExternalDispatch::GetMethodNames() const
{
    return {QStringLiteral("AddChildGallery"), QStringLiteral("AddParentGallery"),
            QStringLiteral("RemoveGallery"), QStringLiteral("SetCurrentGallery")};
}

DispatchResult CViewGalleriesExternalDispatch::CallMethod(int dispid, const QVariantList& arguments)
{
    if (arguments.size() != 1) {
        return DispatchResult::BadParamCount;
    }
    const std::optional<int32_t> gallery = NumberArgument(arguments[0]);
    if (!gallery) {
        return DispatchResult::TypeMismatch;
    }
    using Commands = CViewGalleriesExternalDispatchCommands;
    static constexpr void (Commands::*methods[])(int32_t) = {
        &Commands::AddChildGallery,
        &Commands::AddParentGallery,
        &Commands::RemoveGallery,
        &Commands::SetCurrentGallery,
    };
    (commands.*methods[dispid - 1])(*gallery);
    return DispatchResult::Ok;
}
