#pragma once

#include "content/ContentGeneratorBase.h"
#include "content/PublishedNames.h"

class CImageOrders;

// Lays a deployed gallery out in a folder: its images go into "pictures" below it and are always ordered,
// there or not. One for a run; used on the generation thread.
class CContentGeneratorFolder final : public CContentGeneratorBase {
public:
    struct Options {
        QString targetFolder;
        QString bannerServer;     // address of the frame that a banner shows
        bool makesFolders = true; // false for a run that only finds out what would be written
    };

    // orders: borrowed, outlives this object. Makes the picture folder; throws CWin32Exception.
    CContentGeneratorFolder(const Options& options, CImageOrders& orders);

    // The output folder of the gallery in work. Makes its picture folder; throws CWin32Exception.
    void SetOutputFolder(const QString& path);

    void GenerateBanner(const std::string& width, const std::string& height, std::ostream& out) override;

protected:
    void WriteAdvertisementBody(const QString& text, std::ostream& out) override;
    void WriteCurrentUrl(CImageIterator& iterator, std::ostream& out) override;
    bool IsImageOverwriteForced() const override;
    QString GetImagePath(const WantedImage& image) override;
    QString GetImageUrl(const QString& filePath) const override;
    void ProduceImage(const ImageRequest& request) override;

private:
    QString GetPictureFolder() const;

    QString folder;
    CPublishedNames names;
    const std::string bannerServer;
    const bool makesFolders;
    CImageOrders& orders;
};
