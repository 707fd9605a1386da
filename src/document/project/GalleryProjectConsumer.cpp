#include "document/project/GalleryProjectConsumer.h"

#include "common/Trace.h"

void CGalleryProjectConsumer::UpdateProject(UpdateHint hint, const UpdateParameter&, CGalleryProject& project)
{
    const TraceScope scope(QStringLiteral("CGalleryProjectConsumer::UpdateProject"));
    for (CGalleryProjectConsumer* consumer : consumers) {
        Trace(QStringLiteral("UpdateView with hint ") + QString::number(static_cast<int32_t>(hint)));
        consumer->UpdateView(hint, project);
    }
}
