#include "content/PagesGenerator.h"

#include <cerrno>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "content/ContentGeneratorFolder.h"
#include "content/DeploymentRecord.h"
#include "content/ImageProduction.h"
#include "document/galleries/Gallery.h"
#include "template/contracts/ImageIterator.h"
#include "template/sections/CompoundTemplateSection.h"

bool CPagesCounter::ProcessPage(CCompoundTemplateSection&, CImageIterator& iterator, bool multipage)
{
    count += multipage ? iterator.GetPageCount() : 1;
    return true;
}

void CPagesCounter::ProcessGallery(const QString&, const CGallery&) {}

void CPagesGenerator::ProcessGallery(const QString& galleryFolder, const CGallery& gallery)
{
    run.production.StartAsked();
    for (const QString& directory : gallery.GetStyleDirectories()) {
        const QString copy = JoinPath(run.targetFolder + galleryFolder, ExtractLastName(directory));
        CopyDirectoryTree(directory, copy);
        NoteCopies(directory, copy);
        if (run.stop.IsSet()) {
            return;
        }
    }
    subFolder = galleryFolder;
    run.generator.SetOutputFolder(run.targetFolder + subFolder);
}

bool CPagesGenerator::ProcessPage(CCompoundTemplateSection& tree, CImageIterator& iterator, bool multipage)
{
    for (int32_t page = 0;; ++page) {
        if (run.stop.IsSet()) {
            return false;
        }
        iterator.SetPageIndex(page);
        iterator.Reset();
        tree.Bind(iterator, run.generator);
        // Once more: Bind has moved the picture cursor, and the ids that it registered stay.
        iterator.SetPageIndex(page);
        iterator.PreparePictures();
        run.production.BeginPage();
        WritePage(tree, iterator, JoinPath(run.targetFolder + subFolder, iterator.GetPageFileName(page)));
        run.production.EndPage();
        // A page without picture slots would never see its last page.
        if (!multipage || iterator.IsLastPage() || iterator.GetPicturesPerPage() <= 0) {
            return true;
        }
    }
}

// All files of a tree that was copied.
void CPagesGenerator::NoteCopies(const QString& source, const QString& target)
{
    if (!run.record) {
        return;
    }
    for (const DirectoryEntry& entry : ListDirectory(source)) {
        const QString copy = JoinPath(target, entry.name);
        if (entry.isDirectory && !entry.isHidden) {
            NoteCopies(JoinPath(source, entry.name), copy);
        } else if (!entry.isHidden) {
            run.record->NoteFile(copy);
        }
    }
}

void CPagesGenerator::WritePage(CCompoundTemplateSection& tree, CImageIterator& iterator, const QString& path)
{
    const QByteArray page = QByteArray::fromStdString(tree.GenerateToString(iterator, run.generator));
    // To leave a page that stays the same alone is several times as fast as to replace it.
    const int error = IsFileOf(path, page) ? 0 : ReplaceFile(path, page, Durability::Plain);
    if (error == ENOSPC || error == EDQUOT || error == EIO) {
        throw CWin32Exception(error, Text(StringId::FileNotWritten, path));
    }
    if (error != 0) {
        throw CFileException(
            path, {StringId::FileNotCreated, StringId::FileNameInvalid, StringId::CheckFolderAndFileName});
    }
    if (run.record) {
        run.record->NoteFile(path);
    }
}
