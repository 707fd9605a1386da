#include "content/ContentGeneratorFolder.h"

#include "common/FileSystem.h"
#include "common/Text.h"
#include "content/ImageProduction.h"

CContentGeneratorFolder::CContentGeneratorFolder(const Options& options, CImageProduction& production)
    : bannerServer(Narrow(options.bannerServer)), production(production)
{
    SetOutputFolder(options.targetFolder);
}

void CContentGeneratorFolder::SetOutputFolder(const QString& path)
{
    folder = path;
    MakeDirectoryPath(GetImageFolder(QString()));
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

QString CContentGeneratorFolder::GetImageFolder(const QString&) const
{
    return WithTrailingSeparator(JoinPath(folder, QStringLiteral("pictures")));
}

QString CContentGeneratorFolder::GetImageUrl(const QString& filePath) const
{
    return QStringLiteral("pictures/") + ExtractLastName(filePath);
}

void CContentGeneratorFolder::ProduceImage(const ImageRequest& request)
{
    production.Ask(request);
}
