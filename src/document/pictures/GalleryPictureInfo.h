#pragma once

#include "document/pictures/PictureInfo.h"

class CGallery;

// The entry that stands for a child gallery among its parent's pictures; it shows the child's cover. Its
// variables live in the child gallery.
class CGalleryPictureInfo final : public CPictureInfo {
public:
    // The gallery is borrowed and stays in the project for as long as this entry is listed.
    CGalleryPictureInfo(CGallery& gallery, int32_t galleryIndex)
        : gallery(gallery), galleryIndex(galleryIndex)
    {}

    CGallery& GetGallery() const { return gallery; }
    int32_t GetGalleryIndex() const { return galleryIndex; }

    // The child's cover, made if need be.
    QString GetPath() override;
    // The date of the child's oldest picture; 0 if it has none.
    DateValue GetDate() override;
    bool GetVariable(const QString& name, CVariant& out) override;
    void SetVariable(const QString& name, const CVariant& value) override;
    // Kept, though a cover is shown upright.
    int32_t GetAngle() const override { return angle; }
    void SetAngle(int32_t newAngle) override { angle = newAngle; }
    // Always empty.
    const CVariableMap& GetVariables() const override;
    CVariableMap& GetVariables() override;
    QString GetKey() override;

private:
    CGallery& gallery;
    const int32_t galleryIndex;
    int32_t angle = 0;
};
