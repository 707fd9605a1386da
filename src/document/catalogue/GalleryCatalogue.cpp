#include "document/catalogue/GalleryCatalogue.h"

#include <algorithm>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"
#include "document/catalogue/DefinitionFolder.h"

namespace {

template <class Map>
void LoadDefinitions(Map& map, const QString& folder)
{
    ScanFolder(folder, [&map](const QString& fullPath) {
        const QString key = Lower(fullPath);
        if (map.count(key) == 0) {
            map.try_emplace(key, fullPath);
        }
    });
}

template <class Map>
typename Map::iterator Choose(Map& map, const QString& path)
{
    const auto exact = map.find(path);
    if (exact != map.end()) {
        return exact;
    }
    // Keys are lower-cased.
    const QString fileName = Lower(ExtractLastName(path));
    const auto moved = std::find_if(
        map.begin(), map.end(), [&](const auto& entry) { return ExtractLastName(entry.first) == fileName; });
    return moved != map.end() ? moved : map.begin();
}

QString TemplatesIn(const QString& folder)
{
    return JoinPath(folder, QStringLiteral("Templates"));
}

QString StylesIn(const QString& folder)
{
    return JoinPath(folder, QStringLiteral("Styles"));
}

} // namespace

void CGalleryCatalogue::LoadTemplates()
{
    LoadDefinitions(templates, TemplatesIn(programFolder));
}

void CGalleryCatalogue::LoadTemplates(const QString& projectPath)
{
    LoadDefinitions(templates, TemplatesIn(AbsoluteFolderOf(projectPath)));
    LoadTemplates();
}

void CGalleryCatalogue::LoadStyles()
{
    LoadDefinitions(styles, StylesIn(programFolder));
}

void CGalleryCatalogue::LoadStyles(const QString& projectPath)
{
    LoadDefinitions(styles, StylesIn(AbsoluteFolderOf(projectPath)));
    LoadStyles();
}

void CGalleryCatalogue::Clear()
{
    templates.clear();
    styles.clear();
}

CGalleryTemplate& CGalleryCatalogue::FindTemplate(const QString& key)
{
    const auto exact = templates.find(key);
    if (exact != templates.end()) {
        return exact->second;
    }
    if (templates.empty()) {
        throw CUnexpectedException("GalleryProject", 317, Text(StringId::TemplateNotFound, key));
    }
    return templates.begin()->second;
}

CGalleryCatalogue::Templates::iterator CGalleryCatalogue::ChooseTemplate(const QString& path)
{
    return Choose(templates, path);
}

CGalleryCatalogue::Styles::iterator CGalleryCatalogue::ChooseStyle(const QString& path)
{
    return Choose(styles, path);
}

CGalleryCatalogue::Styles::iterator CGalleryCatalogue::ChooseDefaultStyle()
{
    const auto marked =
        std::find_if(styles.begin(), styles.end(), [](const auto& entry) { return entry.second.isDefault; });
    return marked != styles.end() ? marked : styles.begin();
}
