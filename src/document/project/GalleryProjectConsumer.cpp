#include "document/project/GalleryProjectConsumer.h"

#include "common/Trace.h"

namespace {

bool HasBit(UpdateHint hint, int32_t bit)
{
    return (static_cast<int32_t>(hint) & bit) != 0;
}

} // namespace

bool ConcernsGalleriesView(UpdateHint hint)
{
    return HasBit(hint, 0x1000);
}

bool ConcernsPagesView(UpdateHint hint)
{
    return HasBit(hint, 0x4000);
}

bool ConcernsFolderView(UpdateHint hint)
{
    // Not the bit 0x2000: adding one picture must not make the folder view read its folder again.
    return hint == UpdateHint::ProjectReplaced || hint == UpdateHint::FolderChosen ||
           hint == UpdateHint::PicturesAdded || hint == UpdateHint::PictureRemoved ||
           hint == UpdateHint::GalleryChosen || hint == UpdateHint::FolderReady;
}

void CGalleryProjectConsumer::UpdateProject(UpdateHint hint, const UpdateParameter&, CGalleryProject& project)
{
    const TraceScope scope(QStringLiteral("CGalleryProjectConsumer::UpdateProject"));
    for (CGalleryProjectConsumer* consumer : consumers) {
        Trace(QStringLiteral("UpdateView with hint ") + QString::number(static_cast<int32_t>(hint)));
        consumer->UpdateView(hint, project);
    }
}
