#include "shell/panes/galleries/ViewGalleriesExternalDispatch.h"

#include <array>

namespace {

using Commands = CViewGalleriesExternalDispatchCommands;

// Those that take a gallery and nothing else, by dispid.
constexpr void (Commands::*GalleryMethods[])(int32_t) = {
    &Commands::AddChildGallery,   &Commands::AddParentGallery, &Commands::RemoveGallery,
    &Commands::SetCurrentGallery, &Commands::DragGallery,
};

} // namespace

QStringList CViewGalleriesExternalDispatch::GetMethodNames() const
{
    return {QStringLiteral("AddChildGallery"), QStringLiteral("AddParentGallery"),
            QStringLiteral("RemoveGallery"),   QStringLiteral("SetCurrentGallery"),
            QStringLiteral("DragGallery"),     QStringLiteral("OpenMenu")};
}

DispatchResult CViewGalleriesExternalDispatch::CallMethod(int dispid, const QVariantList& arguments)
{
    const auto method = static_cast<size_t>(dispid - 1);
    const bool isMenu = method >= std::size(GalleryMethods);
    if (arguments.size() != (isMenu ? 3 : 1)) {
        return DispatchResult::BadParamCount;
    }
    std::array<int32_t, 3> numbers{};
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const std::optional<int32_t> number = NumberArgument(arguments[i]);
        if (!number) {
            return DispatchResult::TypeMismatch;
        }
        numbers[static_cast<size_t>(i)] = *number;
    }
    if (isMenu) {
        commands.OpenMenu(numbers[0], numbers[1], numbers[2]);
    } else {
        (commands.*GalleryMethods[method])(numbers[0]);
    }
    return DispatchResult::Ok;
}
