#include "template/sections/TemplateSectionPicture.h"

#include "common/Text.h"
#include "template/contracts/ContentGenerator.h"
#include "template/contracts/ImageIterator.h"
#include "template/contracts/TemplateObserver.h"

void CTemplateSectionPicture::OnClosingBracket()
{
    id = TakeAttribute("id");
    height = TakeAttribute("height");
    width = TakeAttribute("width");
    href = TakeAttribute("href");
    imageReference = TakeAttribute("image_reference", Presence::Optional);
    referenceBlockSize = TakeAttribute("reference_block_size", Presence::Optional);
    alt = TakeAttribute("alt", Presence::Optional);
    CheckNoAttributesLeft();
}

void CTemplateSectionPicture::Clear()
{
    CTemplateSectionElement::Clear();
    height.reset();
    width.reset();
    href.reset();
    id.reset();
    imageReference.reset();
    alt.reset();
    referenceBlockSize.reset();
}

void CTemplateSectionPicture::Bind(CImageIterator& iterator, CContentGenerator& generator)
{
    if (!id) {
        return; // the page ended inside the element: it takes no place among the page's pictures
    }
    const QString boundId = Widen(Evaluate(id, iterator, generator));
    if (depth.observer) {
        depth.observer->OnPictureBound(boundId, bodyStart);
    }
    if (!imageReference) {
        iterator.BindPicture(boundId);
        return;
    }
    const int32_t reference = ParseInteger(Evaluate(imageReference, iterator, generator));
    const int32_t blockSize = ParseInteger(Evaluate(referenceBlockSize, iterator, generator));
    iterator.BindPictureReference(boundId, reference, blockSize);
}

void CTemplateSectionPicture::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                       std::ostream& out)
{
    if (!id) {
        return;
    }
    if (!iterator.HasPicture()) {
        // Only a reference steps on: it may point outside the gallery while what stands behind it is valid. A
        // picture of the page's own stays on the missing one, so that all behind it are silent and the last
        // page ends early.
        if (imageReference) {
            iterator.NextPicture();
        }
        return;
    }
    PictureAttributes picture;
    picture.id = Evaluate(id, iterator, generator);
    picture.href = Evaluate(href, iterator, generator);
    picture.height = Evaluate(height, iterator, generator);
    picture.width = Evaluate(width, iterator, generator);
    picture.hasImageReference = imageReference != nullptr;
    if (alt) {
        picture.alt = Evaluate(alt, iterator, generator);
    }
    generator.GeneratePicture(iterator, picture, out);
    iterator.NextPicture();
}
