#include "content/PublishedNames.h"

#include "common/Text.h"
#include "document/pictures/PictureInfo.h"
#include "document/pictures/PictureNames.h"
#include "effects/FileNames.h"

namespace {

// One picture in two sizes whose numbers read alike: only this file gets a suffix.
QString SuffixOf(const CPublishedNames::Image& image, bool isSameSource, int attempt)
{
    if (isSameSource) {
        return NameSuffixFor(image.sourcePath + QLatin1Char('\n') + image.key, attempt);
    }
    return image.picture ? NameSuffixFor(*image.picture, attempt) : NameSuffixFor(image.sourcePath, attempt);
}

} // namespace

QString CPublishedNames::Claim(const Image& image)
{
    QString path = image.wantedPath;
    const auto first = owners.find(Lower(path));
    const bool isSameSource = first != owners.end() && first->second.sourcePath == image.sourcePath;
    for (int attempt = 0; !IsFree(path, image); ++attempt) {
        const QString suffix = SuffixOf(image, isSameSource, attempt);
        path = WithSuffix(image.wantedPath, suffix);
        if (image.picture && !isSameSource && image.picture->GetNameSuffix().isEmpty()) {
            image.picture->SetNameSuffix(suffix);
        }
    }
    owners.try_emplace(Lower(path), Owner{image.sourcePath, image.key});
    return path;
}

bool CPublishedNames::IsFree(const QString& path, const Image& image)
{
    const auto owner = owners.find(Lower(path));
    return owner == owners.end() ||
           (owner->second.sourcePath == image.sourcePath && owner->second.key == image.key);
}
