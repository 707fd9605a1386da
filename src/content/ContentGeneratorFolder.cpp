#include "content/ContentGeneratorFolder.h"

#include "common/FileSystem.h"
#include "common/Text.h"
#include "content/ImageRequest.h"
#include "effects/ImageEffect.h"

CContentGeneratorFolder::CContentGeneratorFolder(const Options& options, CImageOrders& orders)
    : bannerServer(Narrow(options.bannerServer)), makesFolders(options.makesFolders), orders(orders)
{
    SetOutputFolder(options.targetFolder);
}

void CContentGeneratorFolder::SetOutputFolder(const QString& path)
{
    folder = path;
    names.Clear();
    if (makesFolders) {
        MakeDirectoryPath(GetPictureFolder());
    }
}

void CContentGeneratorFolder::GenerateBanner(const std::string& width, const std::string& height,
                                             std::ostream& out)
{
    out << "<iframe border=\"0\" width=\"" << width << "\" height=\"" << height << "\" src=\"" << bannerServer
        << "\"></iframe>";
}

void CContentGeneratorFolder::WriteAdvertisementBody(const QString& text, std::ostream& out)
{
    out << "<div>\n" << Narrow(text) << "\n</div>";
}

void CContentGeneratorFolder::WriteCurrentUrl(CImageIterator&, std::ostream& out)
{
    out << " new String( document.location )";
}

bool CContentGeneratorFolder::IsImageOverwriteForced() const
{
    return true;
}

QString CContentGeneratorFolder::GetPictureFolder() const
{
    return WithTrailingSeparator(JoinPath(folder, QStringLiteral("pictures")));
}

QString CContentGeneratorFolder::GetImagePath(const WantedImage& image)
{
    const QString name = GetPictureFolder() + ExtractLastName(image.sourcePath);
    return names.Claim({.wantedPath = image.effect.GetResultFileName(name),
                        .sourcePath = image.sourcePath,
                        .key = image.effect.GetKey(),
                        .picture = image.picture});
}

QString CContentGeneratorFolder::GetImageUrl(const QString& filePath) const
{
    return QStringLiteral("pictures/") + ExtractLastName(filePath);
}

void CContentGeneratorFolder::ProduceImage(const ImageRequest& request)
{
    orders.Ask(request);
}
