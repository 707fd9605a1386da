#include "Check.h"
#include "Workshop.h"

namespace {

// Pages and pictures of the whole tree as a view asks for them.
void LookAtAll(CGalleryProject& project)
{
    for (const auto& [index, gallery] : project.GetGalleries()) {
        if (gallery != nullptr) {
            project.GetParentGallery(index);
            Check(gallery->GetPictures().GetCount() >= 0, "a gallery has pictures or none");
        }
    }
}

void ReadAndSave(CWorkshop& workshop, const QString& name)
{
    CGalleryProject project(workshop.GetEnvironment());
    project.Load(workshop.Path(name));
    project.Save(workshop.Path(name));
}

} // namespace

// Bytes of a project file: what is read is written and read again as the same project, and what is refused
// leaves no half of a project behind.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    static CWorkshop workshop;
    const std::string_view input(reinterpret_cast<const char*>(bytes), size);
    const QString path = workshop.Write(QStringLiteral("site/input.gallery"), input);
    CGalleryProject project(workshop.GetEnvironment());
    try {
        project.Load(path);
    } catch (const CExceptionBase& failure) {
        CheckTexts(failure);
        Check(!project.IsLoaded(), "half a project is none");
        Check(project.GetGalleries().empty(), "what was refused leaves no gallery");
        return 0;
    }
    Check(project.IsLoaded(), "a project without failure is loaded");
    LookAtAll(project);
    // What the file left open, the page of a gallery say, stands there from the second reading on.
    const QString saved = QStringLiteral("site/saved.gallery");
    project.Save(workshop.Path(saved));
    ReadAndSave(workshop, saved);
    const auto first = workshop.Read(saved);
    ReadAndSave(workshop, saved);
    Check(first == workshop.Read(saved), "a saved project comes back the same");
    return 0;
}
