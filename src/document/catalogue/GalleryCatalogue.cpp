#include "document/catalogue/GalleryCatalogue.h"

#include <algorithm>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"

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

// The end if there is none.
template <class Map>
typename Map::const_iterator Find(const Map& map, const QString& path)
{
    const auto exact = map.find(path);
    if (exact != map.end()) {
        return exact;
    }
    // Keys are lower-cased.
    const QString fileName = Lower(ExtractLastName(path));
    return std::find_if(map.begin(), map.end(),
                        [&](const auto& entry) { return ExtractLastName(entry.first) == fileName; });
}

template <class Map>
typename Map::const_iterator Choose(const Map& map, const QString& path)
{
    const auto found = Find(map, path);
    return found != map.end() ? found : map.begin();
}

const QString TemplatesFolder = QStringLiteral("Templates");
const QString StylesFolder = QStringLiteral("Styles");

} // namespace

void CGalleryCatalogue::LoadTemplates()
{
    LoadDefinitions(templates, JoinPath(programFolder, TemplatesFolder));
}

void CGalleryCatalogue::LoadTemplates(const QString& projectPath)
{
    LoadDefinitions(templates, JoinPath(AbsoluteFolderOf(projectPath), TemplatesFolder));
    LoadTemplates();
}

void CGalleryCatalogue::LoadStyles()
{
    LoadDefinitions(styles, JoinPath(programFolder, StylesFolder));
}

void CGalleryCatalogue::LoadStyles(const QString& projectPath)
{
    LoadDefinitions(styles, JoinPath(AbsoluteFolderOf(projectPath), StylesFolder));
    LoadStyles();
}

void CGalleryCatalogue::Clear()
{
    templates.clear();
    styles.clear();
}

const CGalleryTemplate& CGalleryCatalogue::FindTemplate(const QString& key) const
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

CGalleryCatalogue::Templates::const_iterator CGalleryCatalogue::ChooseTemplate(const QString& path) const
{
    return Choose(templates, path);
}

CGalleryCatalogue::Styles::const_iterator CGalleryCatalogue::ChooseStyle(const QString& path) const
{
    return Choose(styles, path);
}

CGalleryCatalogue::Styles::const_iterator CGalleryCatalogue::FindStyle(const QString& path) const
{
    return Find(styles, path);
}

CGalleryCatalogue::Styles::const_iterator CGalleryCatalogue::ChooseDefaultStyle() const
{
    const auto marked =
        std::find_if(styles.begin(), styles.end(), [](const auto& entry) { return entry.second.isDefault; });
    return marked != styles.end() ? marked : styles.begin();
}
