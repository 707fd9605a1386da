#include "content/PagesGenerator.h"

#include <cerrno>

#include <QDir>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "content/ContentGeneratorFolder.h"
#include "content/DeploymentRecord.h"
#include "content/ImageProduction.h"
#include "document/galleries/Gallery.h"
#include "template/contracts/ImageIterator.h"
#include "template/parser/CompoundTemplateSection.h"

bool CPagesCounter::ProcessPage(CCompoundTemplateSection&, CImageIterator& iterator, bool multipage)
{
    count += multipage ? iterator.GetPageCount() : 1;
    return true;
}

void CPagesCounter::ProcessGallery(const QString&, const CGallery&) {}

void CPagesMaker::ProcessGallery(const QString& galleryFolder, const CGallery& gallery)
{
    BeginGallery();
    for (const QString& directory : gallery.GetStyleDirectories()) {
        TakeStyle(directory, JoinPath(site.targetFolder + galleryFolder, ExtractLastName(directory)));
        if (site.stop.IsSet()) {
            return;
        }
    }
    subFolder = galleryFolder;
    site.generator.SetOutputFolder(site.targetFolder + subFolder);
}

bool CPagesMaker::ProcessPage(CCompoundTemplateSection& tree, CImageIterator& iterator, bool multipage)
{
    for (int32_t page = 0;; ++page) {
        if (site.stop.IsSet()) {
            return false;
        }
        const bool wasEmpty = page > 0 && iterator.GetPicturesPerPage() <= 0;
        BindPage(tree, iterator, page);
        // A page without picture slots would never see its last page. One whose first page has none by a
        // condition goes on, as long as the next page binds something else.
        if (wasEmpty && iterator.GetPicturesPerPage() <= 0) {
            return true;
        }
        if (!MakePage(tree, iterator, page)) {
            return false;
        }
        if (!multipage || iterator.IsLastPage()) {
            return true;
        }
    }
}

void CPagesMaker::BindPage(CCompoundTemplateSection& tree, CImageIterator& iterator, int32_t page)
{
    iterator.SetPageIndex(page);
    iterator.Reset();
    tree.Bind(iterator, site.generator);
    // Once more: Bind has moved the picture cursor, and the ids that it registered stay.
    iterator.SetPageIndex(page);
}

// False if the run was stopped: the page is not whole then.
bool CPagesMaker::MakePage(CCompoundTemplateSection& tree, CImageIterator& iterator, int32_t page)
{
    iterator.PreparePictures();
    BeginPage();
    const std::string bytes = tree.GenerateToString(iterator, site.generator);
    if (site.stop.IsSet()) {
        return false;
    }
    TakePage(JoinPath(site.targetFolder + subFolder, iterator.GetPageFileName(page)),
             QByteArray::fromStdString(bytes));
    return true;
}

void CPagesGenerator::BeginGallery()
{
    run.production.StartAsked();
}

void CPagesGenerator::TakeStyle(const QString& directory, const QString& copy)
{
    if (run.uncopied) {
        ListStyle(directory, copy);
        return;
    }
    CopyDirectoryTree(directory, copy);
    if (run.record) {
        for (const FileCopy& file : ListCopies(directory, copy)) {
            run.record->NoteFile(file.copy);
        }
    }
}

void CPagesGenerator::ListStyle(const QString& directory, const QString& copy)
{
    const QDir target(run.targetFolder);
    for (const FileCopy& file : ListCopies(directory, copy)) {
        (*run.uncopied)[target.relativeFilePath(file.copy)] = file.source;
    }
}

void CPagesGenerator::BeginPage()
{
    run.production.BeginPage();
}

void CPagesGenerator::TakePage(const QString& path, const QByteArray& page)
{
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
    run.production.EndPage();
}

std::vector<FileCopy> ListCopies(const QString& source, const QString& target)
{
    std::vector<FileCopy> copies;
    for (const DirectoryEntry& entry : ListDirectory(source)) {
        const FileCopy file{JoinPath(source, entry.name), JoinPath(target, entry.name)};
        if (entry.isDirectory && !entry.isHidden) {
            const std::vector<FileCopy> below = ListCopies(file.source, file.copy);
            copies.insert(copies.end(), below.begin(), below.end());
        } else if (!entry.isHidden) {
            copies.push_back(file);
        }
    }
    return copies;
}
