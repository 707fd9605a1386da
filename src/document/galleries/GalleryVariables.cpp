#include "document/galleries/GalleryVariables.h"

#include "common/FileSystem.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryLinks.h"
#include "resources/FormatText.h"

namespace {

CVariant DirectoryOf(const CGalleryStyle& style, bool inPreview)
{
    return CVariant((inPreview ? AddressOfFile(style.directory) : style.folder) + QLatin1Char('/'));
}

CVariant CommonDirectory(CGalleryManager& manager)
{
    return CVariant(manager.IsPreviewMode()
                        ? AddressOfFile(manager.GetProgramFolder()) + QStringLiteral("Styles/Common/")
                        : QStringLiteral("Common/"));
}

bool IsStyleProperty(const QString& property)
{
    return property == QStringLiteral("css") || property == QStringLiteral("styledir") ||
           property == QStringLiteral("stylesubdir");
}

CVariant StyleProperty(const CGalleryStyle& style, const QString& property, bool inPreview)
{
    if (property == QStringLiteral("css")) {
        return CVariant(style.css);
    }
    if (property == QStringLiteral("styledir")) {
        return DirectoryOf(style, inPreview);
    }
    return CVariant(style.folder);
}

// An empty text that is no null text: whoever writes an advertisement tells the two apart.
QString EmptyText()
{
    return QStringLiteral("");
}

} // namespace

bool CGalleryVariables::GetObjectVariable(const QString& object, const QString& name, CVariant& out)
{
    const QString lowered = Lower(object);
    const CGalleryLayout& layout = gallery.GetLayout();
    if (lowered == QStringLiteral("gallery")) {
        GetGalleryVariable(name, out);
        return true;
    }
    if (lowered == QStringLiteral("page")) {
        GetPageVariable({layout.GetPageBaseName(), layout.GetPageNumber()}, name, out);
        return true;
    }
    if (lowered == QStringLiteral("advertisement")) {
        out = CVariant(advertisements[layout.GetTemplatePage()].try_emplace(name, EmptyText()).first->second);
        return true;
    }
    return lowered == QStringLiteral("content") && gallery.GetPictures().GetVariable(name, out);
}

void CGalleryVariables::SetObjectVariable(const QString& object, const QString& name, const CVariant& value)
{
    if (EqualsIgnoreCase(object, QStringLiteral("gallery"))) {
        own.Set(name, value);
    } else if (EqualsIgnoreCase(object, QStringLiteral("content"))) {
        gallery.GetPictures().SetVariable(name, value);
    }
}

bool CGalleryVariables::GetPageVariable(const PageKey& page, const QString& name, CVariant& out)
{
    const QString property = Lower(name);
    if (property == QStringLiteral("common_styledir")) {
        out = CommonDirectory(gallery.GetManager());
        return true;
    }
    if (IsStyleProperty(property)) {
        // Without any style there is no folder either, not even "/".
        const CGalleryStyle* const style = gallery.GetLayout().GetStyleOfPage(page.first);
        if (style) {
            out = StyleProperty(*style, property, gallery.GetManager().IsPreviewMode());
        }
        return style != nullptr;
    }
    const auto variables = pageVariables.find(page);
    return variables != pageVariables.end() && variables->second.Get(name, out);
}

void CGalleryVariables::SetPageVariable(const PageKey& page, const QString& name, const CVariant& value)
{
    pageVariables[page].Set(name, value);
}

QString CGalleryVariables::GetDisplayName() const
{
    for (const auto& name : {QStringLiteral("display_name"), QStringLiteral("name")}) {
        CVariant value;
        if (own.Get(name, value) && value.GetType() == CVariant::Type::String) {
            return value.GetString();
        }
    }
    return gallery.GetManager().GetName();
}

void CGalleryVariables::GetGalleryVariable(const QString& name, CVariant& out)
{
    const CGalleryLayout& layout = gallery.GetLayout();
    const CGalleryTemplate* const layoutTemplate = layout.GetTemplate();
    const QString property = Lower(name);
    if (IsStyleProperty(property)) {
        GetPageVariable({layout.GetPageBaseName(), layout.GetPageNumber()}, property, out);
    } else if (property == QStringLiteral("name")) {
        out = CVariant(GetDisplayName());
    } else if (property == QStringLiteral("layout_name")) {
        out = layoutTemplate ? CVariant(layoutTemplate->GetName()) : CVariant();
    } else if (property == QStringLiteral("banner_params")) {
        out = GetBannerParameters();
    } else if (property == QStringLiteral("banner_url")) {
        out = GetBannerUrl();
    } else if (property == QStringLiteral("template_directory")) {
        out = layoutTemplate ? CVariant(layoutTemplate->GetFolder()) : CVariant();
    } else if (property == QStringLiteral("parent_name")) {
        out = GetParentName();
    } else if (property == QStringLiteral("parent_url")) {
        out = CVariant(GetParentUrl(gallery));
    } else if (property == QStringLiteral("parent_path")) {
        out = CVariant(GetParentPath(gallery));
    } else {
        own.Get(name, out);
    }
}

CVariant CGalleryVariables::GetParentName() const
{
    CGallery* const parent = gallery.GetParent();
    return CVariant(parent ? parent->GetDisplayName() : EmptyText());
}

CVariant CGalleryVariables::GetBannerParameters() const
{
    CGalleryManager& manager = gallery.GetManager();
    if (!manager.IsPreviewMode()) {
        return CVariant();
    }
    return CVariant(FormatText(QStringLiteral("\n<PARAM NAME=\"FlashVars\" VALUE=\"loadURL=%s\">"),
                               {manager.GetBannerFeed()}));
}

CVariant CGalleryVariables::GetBannerUrl() const
{
    CGalleryManager& manager = gallery.GetManager();
    return CVariant(manager.IsPreviewMode() ? manager.GetProgramFolder() + QStringLiteral("banner.swf")
                                            : manager.GetBannerServer());
}
