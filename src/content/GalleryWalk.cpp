#include "content/GalleryWalk.h"

#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "document/content/PageName.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryIterator.h"
#include "document/project/GalleryProject.h"
#include "template/TemplateLanguage.h"
#include "template/parser/CompoundTemplateSection.h"

namespace {

// Sets a gallery's layout page back when the walk leaves the gallery.
class CTemplatePageGuard {
public:
    explicit CTemplatePageGuard(CGallery& gallery)
        : layout(gallery.GetLayout()), page(layout.GetTemplatePage())
    {}
    ~CTemplatePageGuard() { layout.RestoreTemplatePage(page); }
    CTemplatePageGuard(const CTemplatePageGuard&) = delete;
    CTemplatePageGuard& operator=(const CTemplatePageGuard&) = delete;

private:
    CGalleryLayout& layout;
    const QString page;
};

} // namespace

CGalleryWalk::CGalleryWalk(CGalleryProject& project, CContentGenerator& generator, const CStopSignal& stop)
    : project(project), generator(generator), stop(stop)
{}

bool CGalleryWalk::Run(CGalleryTemplatesProcessor& processor)
{
    visited.clear();
    CGallery* root = project.GetRootGallery();
    return root == nullptr || WalkGallery(*root, QString(), processor);
}

bool CGalleryWalk::WalkGallery(CGallery& gallery, const QString& subFolder,
                               CGalleryTemplatesProcessor& processor)
{
    visited.insert(&gallery);
    const CTemplatePageGuard guard(gallery);
    processor.ProcessGallery(subFolder, gallery);
    return WalkPages(gallery, processor) && WalkChildren(gallery, processor);
}

bool CGalleryWalk::WalkPages(CGallery& gallery, CGalleryTemplatesProcessor& processor)
{
    const CGalleryTemplate& layout = project.FindTemplate(gallery.GetLayout().GetTemplateKey());
    for (const CGalleryTemplatePage& page : layout.GetPages()) {
        if (stop.IsSet() || !WalkPage(gallery, page, processor)) {
            return false;
        }
    }
    return true;
}

bool CGalleryWalk::WalkPage(CGallery& gallery, const CGalleryTemplatePage& page,
                            CGalleryTemplatesProcessor& processor)
{
    const CGalleryTemplate& layout = project.FindTemplate(gallery.GetLayout().GetTemplateKey());
    gallery.SetTemplatePage(page.file);
    CCompoundTemplateSection tree;
    layout.LoadPage(page.file, tree, {.stop = &stop});
    if (!SplitPageName(ExtractLastName(layout.GetPageFilePath(page.file)))) {
        return true; // a name such as ".html" or "12.html" yields no file
    }
    CGalleryIterator iterator;
    iterator.Init(gallery);
    iterator.Reset();
    tree.Bind(iterator, generator);
    return processor.ProcessPage(tree, iterator, page.multipage);
}

bool CGalleryWalk::WalkChildren(CGallery& gallery, CGalleryTemplatesProcessor& processor)
{
    for (const int32_t index : gallery.GetChildren()) {
        CGallery* child = project.FindGallery(index);
        if (child == nullptr || visited.count(child) != 0) {
            continue;
        }
        // Not joined to this gallery's own folder: the links between galleries rely on the flat layout.
        if (!WalkGallery(*child, QStringLiteral("/") + QString::number(index), processor)) {
            return false;
        }
    }
    return true;
}
