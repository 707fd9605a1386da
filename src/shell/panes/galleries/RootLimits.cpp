#include "shell/panes/galleries/RootLimits.h"

#include "document/project/GalleryProject.h"

std::optional<CGenericException> WhyNotRemoved(const CGalleryProject& project, int32_t gallery)
{
    const CGallery* const root = project.GetRootGallery();
    const size_t children = root ? root->GetChildren().size() : 1;
    if (children == 1 || root->GetIndex() != gallery) {
        return std::nullopt;
    }
    if (children == 0) {
        return CGenericException(Text(StringId::RootStays), Text(StringId::RootHasNoChild),
                                 Text(StringId::RootHasNoChildAdvice));
    }
    return CGenericException(Text(StringId::RootStays),
                             Text(StringId::RootHasChildren, static_cast<int>(children)),
                             Text(StringId::RootHasChildrenAdvice));
}

std::optional<CGenericException> WhyNotDuplicated(const CGalleryProject& project, int32_t gallery)
{
    const CGallery* const root = project.GetRootGallery();
    return root && root->GetIndex() == gallery
               ? std::optional<CGenericException>(std::in_place, Text(StringId::RootStaysAlone),
                                                  Text(StringId::RootHoldsAll),
                                                  Text(StringId::RootHoldsAllAdvice))
               : std::nullopt;
}
