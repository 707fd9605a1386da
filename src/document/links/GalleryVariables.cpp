#include "document/links/GalleryVariables.h"

#include "common/FileSystem.h"
#include "document/links/GalleryLinks.h"
#include "resources/FormatText.h"

namespace {

bool IsStyleProperty(const QString& property)
{
    return property == QStringLiteral("css") || property == QStringLiteral("styledir") ||
           property == QStringLiteral("stylesubdir");
}

// An empty text that is no null text: whoever writes an advertisement tells the two apart.
QString EmptyText()
{
    return QStringLiteral("");
}

} // namespace

std::optional<CVariant> CGalleryVariables::FindObjectVariable(const QString& object,
                                                              const QString& name) const
{
    const QString lowered = Lower(object);
    if (lowered == QStringLiteral("gallery")) {
        return FindGalleryVariable(name);
    }
    if (lowered == QStringLiteral("page")) {
        return FindVariableOfCurrentPage(name);
    }
    if (lowered == QStringLiteral("advertisement")) {
        return CVariant(FindAdvertisement(name));
    }
    if (lowered == QStringLiteral("content")) {
        return gallery.GetPictures().GetVariable(name);
    }
    return std::nullopt;
}

std::optional<CVariant> CGalleryVariables::FindPageVariable(const GalleryTexts::PageKey& page,
                                                            const QString& name) const
{
    const QString property = Lower(name);
    if (property == QStringLiteral("common_styledir")) {
        return GetCommonDirectory();
    }
    if (IsStyleProperty(property)) {
        // Without any style there is no folder either, not even "/".
        const CGalleryStyle* const style = gallery.GetLayout().GetStyleOfPage(page.first);
        return style ? std::optional(GetStyleProperty(*style, property)) : std::nullopt;
    }
    const auto& pages = gallery.GetTexts().pages;
    const auto variables = pages.find(page);
    return variables != pages.end() ? variables->second.Find(name) : std::nullopt;
}

CVariant CGalleryVariables::FindGalleryVariable(const QString& name) const
{
    const CGalleryTemplate* const layoutTemplate = gallery.GetLayout().GetTemplate();
    const QString property = Lower(name);
    if (IsStyleProperty(property)) {
        return FindVariableOfCurrentPage(property);
    }
    if (property == QStringLiteral("name")) {
        return CVariant(GetDisplayName(gallery, site));
    }
    if (property == QStringLiteral("layout_name")) {
        return layoutTemplate ? CVariant(layoutTemplate->GetName()) : CVariant();
    }
    if (property == QStringLiteral("banner_params")) {
        return GetBannerParameters();
    }
    if (property == QStringLiteral("banner_url")) {
        return GetBannerUrl();
    }
    if (property == QStringLiteral("template_directory")) {
        return layoutTemplate ? CVariant(layoutTemplate->GetFolder()) : CVariant();
    }
    if (property == QStringLiteral("parent_name")) {
        return GetParentName();
    }
    if (property == QStringLiteral("parent_url")) {
        return CVariant(GetParentUrl(gallery, site));
    }
    if (property == QStringLiteral("parent_path")) {
        return CVariant(GetParentPath(gallery, site));
    }
    return gallery.GetTexts().own.Find(name).value_or(CVariant());
}

CVariant CGalleryVariables::FindVariableOfCurrentPage(const QString& name) const
{
    const CGalleryLayout& layout = gallery.GetLayout();
    return FindPageVariable({layout.GetPageBaseName(), layout.GetPageNumber()}, name).value_or(CVariant());
}

QString CGalleryVariables::FindAdvertisement(const QString& name) const
{
    const QString* const text =
        gallery.GetTexts().FindAdvertisement(gallery.GetLayout().GetTemplatePage(), name);
    return text ? *text : EmptyText();
}

CVariant CGalleryVariables::GetStyleProperty(const CGalleryStyle& style, const QString& property) const
{
    if (property == QStringLiteral("css")) {
        return CVariant(style.css);
    }
    if (property == QStringLiteral("stylesubdir")) {
        return CVariant(style.folder);
    }
    return CVariant((site.IsPreviewMode() ? AddressOfFile(style.directory) : style.folder) +
                    QLatin1Char('/'));
}

CVariant CGalleryVariables::GetCommonDirectory() const
{
    return CVariant(site.IsPreviewMode()
                        ? AddressOfFile(site.GetProgramFolder()) + QStringLiteral("Styles/Common/")
                        : QStringLiteral("Common/"));
}

CVariant CGalleryVariables::GetParentName() const
{
    const CGalleryContent* const parent = site.FindParentContent(gallery.GetIndex());
    return CVariant(parent ? GetDisplayName(*parent, site) : EmptyText());
}

CVariant CGalleryVariables::GetBannerParameters() const
{
    if (!site.IsPreviewMode()) {
        return CVariant();
    }
    return CVariant(FormatText(QStringLiteral("\n<PARAM NAME=\"FlashVars\" VALUE=\"loadURL=%s\">"),
                               {site.GetBannerFeed()}));
}

CVariant CGalleryVariables::GetBannerUrl() const
{
    return CVariant(site.IsPreviewMode() ? site.GetProgramFolder() + QStringLiteral("banner.swf")
                                         : site.GetBannerServer());
}
