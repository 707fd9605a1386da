#pragma once

#include <optional>

#include <QString>

#include "common/Variant.h"
#include "document/content/GalleryContent.h"

class CGallerySite;

// What the markup of a layout can ask a gallery for by object and name: its texts, and the values that follow
// from layout, style and place in the site. A view of both, made for the question; changes nothing.
class CGalleryVariables {
public:
    // Borrowed.
    CGalleryVariables(const CGalleryContent& gallery, const CGallerySite& site) : gallery(gallery), site(site)
    {}

    // Objects "gallery", "page", "advertisement" and "content", without regard to case. Nothing for any other
    // object; an empty value for a name without one, an empty text for a missing advertisement.
    std::optional<CVariant> FindObjectVariable(const QString& object, const QString& name) const;
    // Nothing for a name without a value.
    std::optional<CVariant> FindPageVariable(const GalleryTexts::PageKey& page, const QString& name) const;
    // Empty for a name without a value.
    CVariant FindGalleryVariable(const QString& name) const;

private:
    CVariant FindVariableOfCurrentPage(const QString& name) const;
    QString FindAdvertisement(const QString& name) const;
    CVariant GetStyleProperty(const CGalleryStyle& style, const QString& property) const;
    CVariant GetCommonDirectory() const;
    CVariant GetParentName() const;
    CVariant GetBannerParameters() const;
    CVariant GetBannerUrl() const;

    const CGalleryContent& gallery;
    const CGallerySite& site;
};
