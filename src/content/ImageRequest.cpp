#include "content/ImageRequest.h"

#include "effects/ImageEffect.h"
#include "effects/ImageEffectSource.h"

void MakeImage(const ImageRequest& request)
{
    CImageEffectSource source(request.sourcePath);
    request.effect->Apply(source);
    source.Save(request.resultPath);
}
