#include "cli/InfoCommand.h"

#include <optional>
#include <set>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "cli/CommandLine.h"
#include "cli/ProjectSession.h"
#include "document/catalogue/Definitions.h"
#include "document/clusters/PictureClusters.h"
#include "document/galleries/Gallery.h"
#include "document/pictures/PictureInfo.h"

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
        : project(project), clusterSize(clusterSize)
    {}

    QString WriteText()
    {
        Walk(project.GetRootGalleryIndex(), 0, [this](int32_t index, int depth) {
            CGallery& gallery = *project.FindGallery(index);
            text += QStringLiteral("  ").repeated(depth) +
                    QStringLiteral("%1: %2, layout %3, style %4, %5 pictures\n")
                        .arg(index)
                        .arg(gallery.GetDisplayName(), LayoutName(gallery), StyleName(gallery))
                        .arg(CountPictures(gallery));
            if (clusterSize) {
                WriteClusters(gallery, depth);
            }
        });
        return project.GetName() + QLatin1Char('\n') + text;
    }

    QString WriteJson()
    {
        QJsonArray galleries;
        Walk(project.GetRootGalleryIndex(), 0,
             [&](int32_t index, int) { galleries.append(GalleryObject(index)); });
        const QJsonObject root{{QStringLiteral("name"), project.GetName()},
                               {QStringLiteral("root_gallery_index"), project.GetRootGalleryIndex()},
                               {QStringLiteral("galleries"), galleries}};
        return QString::fromUtf8(QJsonDocument(root).toJson());
    }

private:
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

    static QString LayoutName(const CGallery& gallery)
    {
        const CGalleryTemplate* layout = gallery.GetLayout().GetTemplate();
        return layout ? layout->GetName() : QStringLiteral("none");
    }

    static QString StyleName(const CGallery& gallery)
    {
        const CGalleryStyle* style = gallery.GetLayout().GetStyle();
        return style ? style->name : QStringLiteral("none");
    }

    static int CountPictures(CGallery& gallery)
    {
        return gallery.GetPictures().GetCount() - static_cast<int>(gallery.GetChildren().size());
    }

    void WriteClusters(CGallery& gallery, int depth)
    {
        for (const auto& [label, positions] : ClustersOf(gallery, *clusterSize)) {
            text += QStringLiteral("  ").repeated(depth + 2) +
                    QStringLiteral("%1: %2 pictures\n").arg(label).arg(positions.size());
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
        QJsonObject object{{QStringLiteral("index"), index},
                           {QStringLiteral("name"), gallery.GetDisplayName()},
                           {QStringLiteral("layout"), LayoutName(gallery)},
                           {QStringLiteral("style"), StyleName(gallery)},
                           {QStringLiteral("children"), children},
                           {QStringLiteral("pictures"), pictures}};
        if (clusterSize) {
            object.insert(QStringLiteral("clusters"), ClustersArray(gallery));
        }
        return object;
    }

    CGalleryProject& project;
    const std::optional<int32_t> clusterSize;
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
        throw CWrongUse(QStringLiteral("The option '--clusters' needs a number from 1 on, not '%1'.")
                            .arg(parsed.Get(option)));
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
