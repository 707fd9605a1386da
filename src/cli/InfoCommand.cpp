#include <optional>
#include <set>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "cli/Answers.h"
#include "cli/CommandArguments.h"
#include "cli/Commands.h"
#include "cli/ProjectSession.h"
#include "deploy/DeployDoubts.h"
#include "document/catalogue/Definitions.h"
#include "document/clusters/PictureClusters.h"
#include "document/galleries/Gallery.h"
#include "document/pictures/PictureInfo.h"
#include "resources/StringTable.h"

namespace {

class CNeverCancelled final : public CPictureClustersCanceller {
public:
    bool IsCancelled() override { return false; }
};

std::vector<PictureCluster> ClustersOf(CGallery& gallery, int32_t size)
{
    std::vector<PictureCluster> clusters;
    CNeverCancelled canceller;
    BuildPictureClusters(clusters, gallery.GetPictures(), size, canceller);
    return clusters;
}

// Shows each gallery of the tree once, parents before their children.
class CInfoWriter {
public:
    // clusterSize: nothing for no clusters.
    CInfoWriter(CGalleryProject& project, std::optional<int32_t> clusterSize)
        : project(project), clusterSize(clusterSize), missing(FindMissingFiles(project))
    {}

    QString WriteText()
    {
        Walk(project.GetRootGalleryIndex(), 0, [this](int32_t index, int depth) {
            CGallery& gallery = *project.FindGallery(index);
            text +=
                QStringLiteral("  ").repeated(depth) +
                Text(StringId::GalleryLine, index, gallery.GetDisplayName(), OrNone(FindLayoutName(gallery)),
                     OrNone(FindStyleName(gallery)), CountPictures(gallery)) +
                QLatin1Char('\n');
            if (clusterSize) {
                WriteClusters(gallery, depth);
            }
        });
        return project.GetName() + QLatin1Char('\n') + text + MissingText();
    }

    QString WriteJson()
    {
        QJsonArray galleries;
        Walk(project.GetRootGalleryIndex(), 0,
             [&](int32_t index, int) { galleries.append(GalleryObject(index)); });
        const QJsonObject root{{QStringLiteral("name"), project.GetName()},
                               {QStringLiteral("root_gallery_index"), project.GetRootGalleryIndex()},
                               {QStringLiteral("galleries"), galleries},
                               {QStringLiteral("missing"), MissingArray()}};
        return QString::fromUtf8(QJsonDocument(root).toJson());
    }

private:
    QString MissingText() const
    {
        QString lines;
        for (const UnusableFile& file : missing.absentPictures) {
            lines += Text(StringId::MissingPictureLine, file.gallery, file.path) + QLatin1Char('\n');
        }
        for (const UnusableFile& file : missing.unreadableWatermarks) {
            lines += Text(StringId::MissingWatermarkLine, file.gallery, file.path) + QLatin1Char('\n');
        }
        return lines;
    }

    QJsonArray MissingArray() const
    {
        QJsonArray files;
        for (const UnusableFile& file : missing.absentPictures) {
            files.append(
                QJsonObject{{QStringLiteral("gallery"), file.gallery}, {QStringLiteral("path"), file.path}});
        }
        for (const UnusableFile& file : missing.unreadableWatermarks) {
            files.append(QJsonObject{{QStringLiteral("gallery"), file.gallery},
                                     {QStringLiteral("path"), file.path},
                                     {QStringLiteral("watermark"), true}});
        }
        return files;
    }

    template <class Visit>
    void Walk(int32_t index, int depth, const Visit& visit)
    {
        CGallery* gallery = project.FindGallery(index);
        if (gallery == nullptr || !visited.insert(index).second) {
            return;
        }
        visit(index, depth);
        for (const int32_t child : gallery->GetChildren()) {
            Walk(child, depth + 1, visit);
        }
    }

    static std::optional<QString> FindLayoutName(const CGallery& gallery)
    {
        const CGalleryTemplate* layout = gallery.GetLayout().GetTemplate();
        return layout ? std::optional(layout->GetName()) : std::nullopt;
    }

    static std::optional<QString> FindStyleName(const CGallery& gallery)
    {
        const CGalleryStyle* style = gallery.GetLayout().GetStyle();
        return style ? std::optional(style->name) : std::nullopt;
    }

    static QString OrNone(const std::optional<QString>& name)
    {
        return name.value_or(Text(StringId::NoLayoutOrStyle));
    }

    static int CountPictures(CGallery& gallery)
    {
        return gallery.GetPictures().GetCount() - static_cast<int>(gallery.GetChildren().size());
    }

    void WriteClusters(CGallery& gallery, int depth)
    {
        for (const auto& [label, positions] : ClustersOf(gallery, *clusterSize)) {
            text += QStringLiteral("  ").repeated(depth + 2) +
                    Text(StringId::ClusterLine, label, static_cast<int>(positions.size())) +
                    QLatin1Char('\n');
        }
    }

    // Child galleries have their places among the pictures.
    QJsonArray ClustersArray(CGallery& gallery)
    {
        QJsonArray clusters;
        for (const auto& [label, positions] : ClustersOf(gallery, *clusterSize)) {
            QJsonArray pictures;
            QJsonArray children;
            for (const int32_t position : positions) {
                CPictureInfo* const picture = gallery.GetPictures().GetAt(position);
                if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(picture)) {
                    children.append(child->GetGalleryIndex());
                } else {
                    pictures.append(picture->GetPath());
                }
            }
            clusters.append(QJsonObject{{QStringLiteral("label"), label},
                                        {QStringLiteral("pictures"), pictures},
                                        {QStringLiteral("children"), children}});
        }
        return clusters;
    }

    QJsonObject GalleryObject(int32_t index)
    {
        CGallery& gallery = *project.FindGallery(index);
        QJsonArray pictures;
        for (int32_t position = 0; position < gallery.GetPictures().GetCount(); ++position) {
            CPictureInfo& picture = *gallery.GetPictures().GetAt(position);
            if (dynamic_cast<CGalleryPictureInfo*>(&picture) == nullptr) {
                pictures.append(QJsonObject{{QStringLiteral("path"), picture.GetPath()},
                                            {QStringLiteral("angle"), picture.GetAngle()}});
            }
        }
        QJsonArray children;
        for (const int32_t child : gallery.GetChildren()) {
            children.append(child);
        }
        const QString none = QStringLiteral("none"); // in every language, for scripts
        QJsonObject object{{QStringLiteral("index"), index},
                           {QStringLiteral("name"), gallery.GetDisplayName()},
                           {QStringLiteral("layout"), FindLayoutName(gallery).value_or(none)},
                           {QStringLiteral("style"), FindStyleName(gallery).value_or(none)},
                           {QStringLiteral("children"), children},
                           {QStringLiteral("pictures"), pictures}};
        if (clusterSize) {
            object.insert(QStringLiteral("clusters"), ClustersArray(gallery));
        }
        return object;
    }

    CGalleryProject& project;
    const std::optional<int32_t> clusterSize;
    const DeployDoubts missing;
    std::set<int32_t> visited;
    QString text;
};

std::optional<int32_t> ParseClusterSize(const CommandArguments& parsed)
{
    const QString option = QStringLiteral("clusters");
    if (!parsed.Has(option)) {
        return std::nullopt;
    }
    bool isNumber = false;
    const int32_t size = parsed.Get(option).toInt(&isNumber);
    if (!isNumber || size <= 0) {
        throw CWrongUse(Text(StringId::ClustersNeedNumber, parsed.Get(option)));
    }
    return size;
}

} // namespace

int RunInfo(const QStringList& arguments)
{
    const CommandArguments parsed = ParseArguments(arguments, {.valueOptions = {QStringLiteral("clusters")},
                                                               .switches = {QStringLiteral("json")},
                                                               .minPositional = 1,
                                                               .maxPositional = 1});
    const std::optional<int32_t> clusterSize = ParseClusterSize(parsed);
    CProjectSession session;
    session.OpenExisting(parsed.positional.front());
    CInfoWriter writer(session.GetProject(), clusterSize);
    PrintOut(parsed.Has(QStringLiteral("json")) ? writer.WriteJson() : writer.WriteText());
    return ExitDone;
}
