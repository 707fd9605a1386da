#include "template/sections/PictureSections.h"

#include "common/Text.h"
#include "template/contracts/ContentGenerator.h"
#include "template/contracts/ImageIterator.h"
#include "template/contracts/TemplateObserver.h"

namespace {

constexpr int Optional = AttributeRow::Optional;

const ValueTable<PictureAttributes> PictureTable = {OtherAttributes::Refused,
                                                    {{"id", 1, &PictureAttributes::id},
                                                     {"href", 4, &PictureAttributes::href},
                                                     {"height", 2, &PictureAttributes::height},
                                                     {"width", 3, &PictureAttributes::width},
                                                     {"alt", Optional, &PictureAttributes::alt},
                                                     {"image_reference", Optional, EvaluatedApart},
                                                     {"reference_block_size", Optional, EvaluatedApart}}};

using Reference = ImageReferenceAttributes;

const ValueTable<Reference> ReferenceTable = {OtherAttributes::Refused,
                                              {{"name", 1, &Reference::name},
                                               {"id", 7, &Reference::id},
                                               {"src", 3, &Reference::src},
                                               {"href_property", 2, &Reference::hrefProperty},
                                               {"alt_property", 4, &Reference::altProperty},
                                               {"default_href", 5, &Reference::defaultHref},
                                               {"default_alt", 6, &Reference::defaultAlt}}};

} // namespace

CTemplateSectionPicture::CTemplateSectionPicture() : CTemplateSectionElement(PictureTable) {}

void CTemplateSectionPicture::Bind(CImageIterator& iterator, CContentGenerator& generator)
{
    if (!Has("id")) {
        return; // the page ended inside the element: it takes no place among the page's pictures
    }
    const QString id = Widen(Evaluate("id", iterator, generator));
    if (context.observer) {
        context.observer->OnPictureBound(id, bodyStart);
    }
    if (!Has("image_reference")) {
        iterator.BindPicture(id);
        return;
    }
    const int32_t reference = ParseInteger(Evaluate("image_reference", iterator, generator));
    const int32_t blockSize = ParseInteger(Evaluate("reference_block_size", iterator, generator));
    iterator.BindPictureReference(id, reference, blockSize);
}

void CTemplateSectionPicture::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                       std::ostream& out)
{
    if (!Has("id")) {
        return;
    }
    if (!iterator.HasPicture()) {
        // Only a reference steps on: it may point outside the gallery while what follows it is valid. A
        // picture of the page's own stays on the missing one, so that all that follow are silent and the last
        // page ends early.
        if (Has("image_reference")) {
            iterator.NextPicture();
        }
        return;
    }
    PictureAttributes picture = EvaluateAll(PictureTable, iterator, generator);
    picture.hasImageReference = Has("image_reference");
    generator.GeneratePicture(iterator, picture, out);
    iterator.NextPicture();
}

CTemplateSectionImageReference::CTemplateSectionImageReference() : CTemplateSectionElement(ReferenceTable) {}

void CTemplateSectionImageReference::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                              std::ostream& out)
{
    generator.GenerateImageReference(iterator, EvaluateAll(ReferenceTable, iterator, generator), out);
}
