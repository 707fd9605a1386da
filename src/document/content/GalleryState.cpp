#include "document/content/GalleryState.h"

#include <utility>

namespace {

template <class Part>
std::shared_ptr<const Part> Shared(Part part, const std::shared_ptr<const Part>& former)
{
    return former && *former == part ? former : std::make_shared<const Part>(std::move(part));
}

} // namespace

GalleryState StateOf(const CGalleryContent& gallery, const GalleryState& former)
{
    const PictureListState none;
    return {.pictures = Shared(gallery.GetPictures().GetState(former.pictures ? *former.pictures : none),
                               former.pictures),
            .layout = Shared(gallery.GetLayout(), former.layout),
            .texts = Shared(gallery.GetTexts(), former.texts),
            .visibility = Shared(gallery.GetVisibility().GetPages(), former.visibility),
            .stamps = Shared(GalleryState::Stamps{gallery.GetImageStamps(), gallery.GetTextStamps()},
                             former.stamps),
            .rests = Shared(gallery.GetRests(), former.rests)};
}
