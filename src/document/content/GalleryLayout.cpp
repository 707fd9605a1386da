#include "document/content/GalleryLayout.h"

#include "common/FileSystem.h"
#include "template/parser/TemplateParsingException.h"

CGalleryLayout::CGalleryLayout(const CGalleryCatalogue& catalogue)
    : catalogue(&catalogue),
      currentTemplate(catalogue.GetTemplates().begin()),
      currentStyle(catalogue.ChooseDefaultStyle())
{}

const CGalleryTemplate* CGalleryLayout::GetTemplate() const
{
    return currentTemplate != catalogue->GetTemplates().end() ? &currentTemplate->second : nullptr;
}

QString CGalleryLayout::GetTemplateKey() const
{
    return currentTemplate != catalogue->GetTemplates().end() ? currentTemplate->first : QString();
}

const CGalleryStyle* CGalleryLayout::GetStyle() const
{
    return currentStyle != catalogue->GetStyles().end() ? &currentStyle->second : nullptr;
}

QString CGalleryLayout::GetStyleKey() const
{
    return currentStyle != catalogue->GetStyles().end() ? currentStyle->first : QString();
}

const CGalleryStyle* CGalleryLayout::GetStyleOfPage(const QString& baseName) const
{
    const auto chosen = pageStyles.find(baseName);
    if (chosen != pageStyles.end()) {
        const auto style = catalogue->FindStyle(chosen->second);
        if (style != catalogue->GetStyles().end()) {
            return &style->second;
        }
    }
    return GetStyle();
}

bool CGalleryLayout::ChooseTemplate(const QString& path)
{
    const auto chosen = catalogue->ChooseTemplate(path);
    if (chosen == catalogue->GetTemplates().end()) {
        return false;
    }
    currentTemplate = chosen;
    keptTemplateKey.clear();
    const CGalleryTemplate& layout = chosen->second;
    // A layout without pages leaves the page alone: asking for a page of it says what is wrong.
    if (!layout.HasPage(templatePage) && !layout.GetPages().empty()) {
        SetTemplatePage(layout.GetPages().front().file);
    }
    return true;
}

bool CGalleryLayout::SetTemplatePage(const QString& name)
{
    if (name == templatePage && !name.isNull()) {
        return false;
    }
    if (!name.contains(QLatin1Char('.'))) {
        throw TemplateError(Text(StringId::InvalidPageFileName, name));
    }
    RestoreTemplatePage(name);
    return true;
}

void CGalleryLayout::RestoreTemplatePage(const QString& name)
{
    const DottedName cut = CutAtFirstDot(name);
    pageBaseName = cut.stem;
    pageExtension = cut.rest;
    templatePage = name;
}

void CGalleryLayout::SetStyle(const QString& path)
{
    const auto chosen = catalogue->ChooseStyle(path);
    if (chosen == catalogue->GetStyles().end()) {
        return;
    }
    if (!pageBaseName.isEmpty()) {
        pageStyles[pageBaseName] = chosen->first;
    }
    currentStyle = chosen;
    keptStyleKey.clear();
}

void CGalleryLayout::ShowStyle(const QString& key)
{
    const auto found = catalogue->FindStyle(key);
    if (found != catalogue->GetStyles().end()) {
        currentStyle = found;
        keptStyleKey = found->first != key ? key : QString();
    }
}

void CGalleryLayout::KeepTemplateKey(const QString& key)
{
    keptTemplateKey = key != GetTemplateKey() ? key : QString();
}

void CGalleryLayout::KeepStyleKey(const QString& key)
{
    keptStyleKey = key != GetStyleKey() ? key : QString();
    if (!keptStyleKey.isEmpty() && !pageBaseName.isEmpty()) {
        pageStyles[pageBaseName] = keptStyleKey;
    }
}

QString CGalleryLayout::GetWrittenTemplateKey() const
{
    return keptTemplateKey.isEmpty() ? GetTemplateKey() : keptTemplateKey;
}

QString CGalleryLayout::GetWrittenStyleKey() const
{
    return keptStyleKey.isEmpty() ? GetStyleKey() : keptStyleKey;
}

bool CGalleryLayout::IsAddedAtFront() const
{
    const CGalleryTemplate* const layout = GetTemplate();
    return layout && !layout->GetPages().empty() && layout->GetPage(templatePage).addAtFront;
}

std::vector<QString> CGalleryLayout::GetStyleDirectories() const
{
    std::vector<QString> directories;
    for (const auto& [page, key] : pageStyles) {
        const auto style = catalogue->FindStyle(key);
        if (style != catalogue->GetStyles().end()) {
            directories.push_back(style->second.directory);
        }
    }
    if (const CGalleryStyle* style = GetStyle()) {
        directories.push_back(style->directory);
    }
    return directories;
}
