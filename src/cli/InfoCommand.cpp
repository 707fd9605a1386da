#include "cli/InfoCommand.h"

#include <set>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "cli/CommandLine.h"
#include "cli/ProjectSession.h"
#include "document/Gallery.h"
#include "document/GalleryPictureInfo.h"
#include "document/GalleryStyle.h"
#include "document/GalleryTemplate.h"

namespace {

// Shows each gallery of the tree once, parents before their children.
class CInfoWriter {
public:
    explicit CInfoWriter(CGalleryProject& project) : project(project) {}

    QString WriteText()
    {
        Walk(project.GetRootGalleryIndex(), 0, [this](int32_t index, int depth) {
            CGallery& gallery = *project.FindGallery(index);
            text += QStringLiteral("  ").repeated(depth) +
                    QStringLiteral("%1: %2, layout %3, style %4, %5 pictures\n")
                        .arg(index)
                        .arg(gallery.GetDisplayName(), LayoutName(gallery), StyleName(gallery))
                        .arg(CountPictures(gallery));
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
        return {{QStringLiteral("index"), index},
                {QStringLiteral("name"), gallery.GetDisplayName()},
                {QStringLiteral("layout"), LayoutName(gallery)},
                {QStringLiteral("style"), StyleName(gallery)},
                {QStringLiteral("children"), children},
                {QStringLiteral("pictures"), pictures}};
    }

    CGalleryProject& project;
    std::set<int32_t> visited;
    QString text;
};

} // namespace

int RunInfo(const QStringList& arguments)
{
    const CommandArguments parsed = ParseArguments(
        arguments,
        {.valueOptions = {}, .switches = {QStringLiteral("json")}, .minPositional = 1, .maxPositional = 1});
    CProjectSession session;
    session.OpenExisting(parsed.positional.front());
    CInfoWriter writer(session.GetProject());
    PrintOut(parsed.Has(QStringLiteral("json")) ? writer.WriteJson() : writer.WriteText());
    return ExitDone;
}
