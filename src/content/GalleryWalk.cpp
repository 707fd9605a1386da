#include "content/GalleryWalk.h"

#include <deque>
#include <optional>

#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "document/content/PageName.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryIterator.h"
#include "document/project/GalleryProject.h"
#include "template/TemplateLanguage.h"
#include "template/parser/CompoundTemplateSection.h"

// A gallery that the walk is in or below. Sets its layout page back when the walk leaves it.
class CGalleryWalk::COpenGallery {
public:
    explicit COpenGallery(CGallery& gallery)
        : layout(gallery.GetLayout()),
          page(layout.GetTemplatePage()),
          children(gallery.GetChildren()),
          next(children.begin())
    {}
    ~COpenGallery() { layout.RestoreTemplatePage(page); }
    COpenGallery(const COpenGallery&) = delete;
    COpenGallery& operator=(const COpenGallery&) = delete;

    // Nothing after the last.
    std::optional<int32_t> TakeChild()
    {
        return next != children.end() ? std::optional(*next++) : std::nullopt;
    }

private:
    CGalleryLayout& layout;
    const QString page;
    const std::set<int32_t> children;
    std::set<int32_t>::const_iterator next;
};

struct CGalleryWalk::Walking {
    std::deque<COpenGallery>& open; // from the root down
    CGalleryTemplatesProcessor& processor;
};

CGalleryWalk::CGalleryWalk(CGalleryProject& project, CContentGenerator& generator, const CStopSignal& stop)
    : project(project), generator(generator), stop(stop)
{}

bool CGalleryWalk::Run(CGalleryTemplatesProcessor& processor)
{
    visited.clear();
    CGallery* const root = project.GetRootGallery();
    // By hand: a line of galleries may be longer than the stack is deep. A gallery stays open while its
    // children are walked, since their links lead to the page that it has then.
    std::deque<COpenGallery> open;
    bool goesOn = root == nullptr || Enter(*root, QString(), {open, processor});
    while (goesOn && !open.empty()) {
        const std::optional<int32_t> index = open.back().TakeChild();
        if (!index) {
            open.pop_back();
            continue;
        }
        CGallery* const child = project.FindGallery(*index);
        if (child != nullptr && visited.count(child) == 0) {
            // Not joined to its parent's own folder: the links between galleries rely on the flat layout.
            goesOn = Enter(*child, QStringLiteral("/") + QString::number(*index), {open, processor});
        }
    }
    return goesOn;
}

bool CGalleryWalk::Enter(CGallery& gallery, const QString& subFolder, const Walking& walking)
{
    visited.insert(&gallery);
    walking.open.emplace_back(gallery);
    walking.processor.ProcessGallery(subFolder, gallery);
    return WalkPages(gallery, walking.processor);
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
