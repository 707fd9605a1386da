#pragma once

#include <cstdint>
#include <map>
#include <utility>

#include <QString>

#include "common/Variant.h"

class CGallery;

// What the markup of a layout can ask a gallery for by object and name: the variables of the gallery and of
// its pages, the advertisements, and the values that follow from layout, style and place in the tree. Owned
// by its gallery.
class CGalleryVariables {
public:
    // Base name of a layout page, number of the output page.
    using PageKey = std::pair<QString, int32_t>;
    using PageVariables = std::map<PageKey, CVariableMap>;
    // By page file name, then by name of the slot.
    using Advertisements = std::map<QString, std::map<QString, QString>>;

    // Borrowed: the owner.
    explicit CGalleryVariables(CGallery& gallery) : gallery(gallery) {}

    // Objects "gallery", "page", "advertisement" and "content", without regard to case. False for any other
    // object; a name that has no value leaves out as it is.
    bool GetObjectVariable(const QString& object, const QString& name, CVariant& out);
    // Objects "gallery" and "content"; any other is ignored.
    void SetObjectVariable(const QString& object, const QString& name, const CVariant& value);
    // False for a name without a value.
    bool GetPageVariable(const PageKey& page, const QString& name, CVariant& out);
    void SetPageVariable(const PageKey& page, const QString& name, const CVariant& value);

    // The variable display_name, else the variable name, else the project's name.
    QString GetDisplayName() const;

    CVariableMap& GetOwn() { return own; }
    PageVariables& GetPageVariables() { return pageVariables; }
    Advertisements& GetAdvertisements() { return advertisements; }

private:
    void GetGalleryVariable(const QString& name, CVariant& out);
    CVariant GetParentName() const;
    CVariant GetBannerParameters() const;
    CVariant GetBannerUrl() const;

    CGallery& gallery;
    CVariableMap own;
    PageVariables pageVariables;
    Advertisements advertisements;
};
