#include "shell/panes/pages/ShownPage.h"

#include "common/Exceptions.h"
#include "common/Platform.h"
#include "common/TempFolder.h"
#include "common/Trace.h"
#include "content/ContentGeneratorViews.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryIterator.h"
#include "document/galleries/GalleryManager.h"
#include "shell/look/WaitCursor.h"
#include "shell/panes/pages/FailurePage.h"
#include "template/contracts/ContentGeneratorStringConverter.h"
#include "template/parser/TemplateParsingException.h"
#include "template/parser/TemplateVariableName.h"
#include "template/sections/CompoundTemplateSection.h"

CShownPage::CShownPage() = default;
CShownPage::~CShownPage() = default;

void CShownPage::Clear()
{
    iterator.reset();
    gallery = nullptr;
}

std::string CShownPage::Generate(CGallery& shownGallery)
{
    gallery = &shownGallery;
    try {
        return GeneratePage();
    } catch (const CTemplateParsingException& error) {
        Clear();
        return BuildTemplateErrorPage(error, shownGallery);
    } catch (const CExceptionBase& failure) {
        Clear();
        return BuildFailurePage(failure);
    }
}

std::string CShownPage::GeneratePage()
{
    Trace(QStringLiteral("Before_getting_template_section"));
    CGalleryLayout& layout = gallery->GetLayout();
    CCompoundTemplateSection tree;
    if (layout.GetTemplate()) {
        layout.GetTemplate()->LoadPage(layout.GetTemplatePage(), tree);
    }
    Trace(QStringLiteral("After_getting_template_section"));
    const CWaitCursor cursor;
    CContentGeneratorPreview generator(FindTemporaryFolder());
    const auto bind = [&] {
        iterator = std::make_unique<CGalleryIterator>();
        iterator->Init(*gallery);
        iterator->Reset();
        tree.Bind(*iterator, generator);
    };
    bind();
    const int32_t pageCount = iterator->GetPageCount();
    const int32_t pageIndex = iterator->GetPageIndex();
    if (pageCount != 0 && pageCount <= pageIndex) {
        layout.SetPageNumber(pageIndex - 1);
        bind();
    }
    iterator->SetPageIndex(iterator->GetPageIndex());
    iterator->PreparePictures();
    return tree.GenerateToString(*iterator, generator);
}

int32_t CShownPage::FindPictureIndex(const QString& id)
{
    return iterator ? iterator->FindPictureIndex(id) : -1;
}

QString CShownPage::GetPicturePath(int32_t position)
{
    CPictureInfo* const picture = gallery ? gallery->GetPictures().GetAt(position) : nullptr;
    return picture ? picture->GetPath() : QString();
}

std::optional<QString> CShownPage::ReadVariable(const QString& property)
{
    try {
        const CTemplateVariableName name(property);
        CVariant value;
        const bool found =
            iterator && iterator->GetVariable(name.GetObjectName(), name.GetVariableName(), value);
        return found && !value.IsEmpty()
                   ? std::optional(CContentGeneratorStringConverter().VariantToString(value))
                   : std::nullopt;
    } catch (const CExceptionBase& failure) {
        Trace(failure.GetDescription()); // a script may name what is no property
        return std::nullopt;
    }
}

void CShownPage::WriteVariable(const QString& property, const QString& text)
{
    const qsizetype point = property.indexOf(QLatin1Char('.'));
    if (iterator && point >= 0) {
        iterator->SetVariable(property.left(point), property.mid(point + 1), CVariant(text));
    }
}

QStringList FoldersOfPages(CGallery& gallery)
{
    CGalleryManager& manager = gallery.GetManager();
    QStringList folders = {FindTemporaryFolder(), manager.GetTempFolder().GetPath(),
                           manager.GetProgramFolder()};
    if (const CGalleryTemplate* layout = gallery.GetLayout().GetTemplate()) {
        folders += layout->GetFolder();
    }
    for (const QString& folder : gallery.GetStyleDirectories()) {
        folders += folder;
    }
    return folders;
}
