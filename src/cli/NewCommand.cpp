#include <cerrno>
#include <limits>

#include <QDir>

#include "cli/Answers.h"
#include "cli/CommandArguments.h"
#include "cli/Commands.h"
#include "cli/ProjectSession.h"
#include "cli/StampOptions.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"
#include "document/catalogue/Definitions.h"
#include "document/galleries/Gallery.h"
#include "document/pictures/PictureFiles.h"
#include "document/project/ProjectFilePath.h"

namespace {

const QString& NameOf(const CGalleryTemplate& layout)
{
    return layout.GetName();
}

const QString& NameOf(const CGalleryStyle& style)
{
    return style.name;
}

// The key of the layout or style of that name: its display name or the name of its definition file, both
// without regard to case. Throws CGenericException if there is none.
template <class Definitions>
QString FindByName(const Definitions& definitions, const QString& name, StringId missing)
{
    QStringList names;
    for (const auto& [key, definition] : definitions) {
        if (EqualsIgnoreCase(NameOf(definition), name) ||
            EqualsIgnoreCase(ExtractLastName(key), name + QStringLiteral(".xml"))) {
            return key;
        }
        names += NameOf(definition);
    }
    throw CGenericException(Text(missing, name),
                            Text(StringId::AvailableNames, names.join(QStringLiteral(", "))),
                            Text(StringId::CheckProgramFolder));
}

// Fills a new project from the arguments.
class CProjectBuilder {
public:
    CProjectBuilder(CGalleryProject& project, const CommandArguments& arguments)
        : project(project), stamps(arguments)
    {
        // Without a name the root has what a new project has, and its children follow it.
        const CGalleryLayout& first = project.FindGallery(project.GetRootGalleryIndex())->GetLayout();
        layout = first.GetTemplateKey();
        style = first.GetStyleKey();
        if (arguments.Has(QStringLiteral("layout"))) {
            layout = FindByName(project.GetCatalogue().GetTemplates(),
                                arguments.Get(QStringLiteral("layout")), StringId::NoSuchLayout);
        }
        if (arguments.Has(QStringLiteral("style"))) {
            style = FindByName(project.GetCatalogue().GetStyles(), arguments.Get(QStringLiteral("style")),
                               StringId::NoSuchStyle);
        }
    }

    CGallery& PrepareGallery(int32_t index)
    {
        CGallery& gallery = *project.FindGallery(index);
        // Chosen once by hand even if it stays the same: it sets the page that links from other galleries
        // name.
        gallery.SetTemplate(layout);
        gallery.SetStyle(style);
        stamps.ApplyTo(gallery);
        return gallery;
    }

    void AddPicturesOf(CGallery& gallery, const QString& folder)
    {
        for (const QString& path : ListPictureFiles(folder)) {
            gallery.AddPicture(path);
        }
    }

    // The subfolders become children, the folder's own pictures come after them.
    void AddTree(int32_t index, const QString& folder)
    {
        for (const DirectoryEntry& entry : ListDirectory(folder)) {
            if (!entry.isDirectory || entry.isHidden) {
                continue;
            }
            const int32_t child = project.AddChildGallery(index);
            PrepareGallery(child).SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("name"),
                                                    entry.name);
            AddTree(child, JoinPath(folder, entry.name));
        }
        AddPicturesOf(*project.FindGallery(index), folder);
    }

private:
    CGalleryProject& project;
    const CStampOptions stamps;
    QString layout;
    QString style;
};

QString ExistingFolder(const QString& argument)
{
    const QString folder = ExistingPath(argument);
    if (!FolderExists(folder)) {
        throw CWin32Exception(ENOTDIR, Text(StringId::FileNotRead, folder));
    }
    return folder;
}

} // namespace

int RunNew(const QStringList& arguments)
{
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = QStringList{QStringLiteral("layout"), QStringLiteral("style"),
                                                QStringLiteral("tree")} +
                                    CStampOptions::GetNames(),
                    .switches = {},
                    .minPositional = 1,
                    .maxPositional = std::numeric_limits<qsizetype>::max()});
    // The desktop program opens nothing else.
    const QString name = parsed.positional.front();
    const QString path =
        QDir(HasProjectEnding(name) ? name : name + QStringLiteral(".gallery")).absolutePath();
    if (FileExists(path)) {
        throw CGenericException(Text(StringId::ProjectExists, path), Text(StringId::NewNeverOverwrites),
                                Text(StringId::ChooseAnotherName));
    }

    CProjectSession session;
    CGalleryProject& project = session.GetProject();
    project.New();
    project.LoadTemplates(path); // those that lie beside the new project
    project.LoadStyles(path);
    CProjectBuilder builder(project, parsed);
    CGallery& root = builder.PrepareGallery(project.GetRootGalleryIndex());
    if (parsed.Has(QStringLiteral("tree"))) {
        builder.AddTree(project.GetRootGalleryIndex(), ExistingFolder(parsed.Get(QStringLiteral("tree"))));
    }
    for (const QString& argument : parsed.positional.mid(1)) {
        const QString source = ExistingPath(argument);
        if (FolderExists(source)) {
            builder.AddPicturesOf(root, source);
        } else {
            root.AddPicture(source);
        }
    }
    project.Save(path);
    return ExitDone;
}
