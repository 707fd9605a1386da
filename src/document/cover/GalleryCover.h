#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QByteArray>
#include <QString>

#include "common/FileIdentity.h"
#include "document/cover/CoverComposition.h"

class CCoverCache;
class CGalleryCover;
class CPictureInfo;
class CPictureList;
class CTempFolder;

// The project as the covers of its galleries see it.
class CCoverSite {
public:
    // Null for an index that names no gallery.
    virtual CGalleryCover* FindCover(int32_t galleryIndex) = 0;
    // Of the gallery that lists this one; null for the root and for a gallery that no other lists.
    virtual CGalleryCover* FindParentCover(int32_t galleryIndex) = 0;
    // Takes the files of covers.
    virtual const CTempFolder& GetTempFolder() const = 0;
    virtual CCoverCache& GetCoverCache() = 0;

protected:
    ~CCoverSite() = default;
};

// The picture that stands for a gallery in its parent: made from the gallery's first pictures, in the
// temporary folder of the run. Its name is known at once; its pixels are made when somebody asks for the
// file, so that a project opens without opening a picture. Part of its gallery, used on its thread.
class CGalleryCover {
public:
    // As many pictures can show.
    static constexpr int32_t PictureCount = 4;

    // pictures: those of the gallery. Both are borrowed.
    CGalleryCover(int32_t galleryIndex, CPictureList& pictures, CCoverSite& site);
    CGalleryCover(const CGalleryCover&) = delete;
    CGalleryCover& operator=(const CGalleryCover&) = delete;

    // The file, made if need be, together with those that it shows. It holds
    // the picture of an empty gallery if none of the pictures can be read. Throws CExceptionBase if it can't
    // be written.
    QString GetPath();

    // Makes the files of several covers that are not there yet, on all cores.
    static void MakeAll(const std::vector<CGalleryCover*>& covers);

    // The same path, with no file made.
    const QString& GetName() const { return path; }
    int32_t GetGalleryIndex() const { return galleryIndex; }

    // --- For making the file on another thread, from values that no longer know the document.

    // What the cover shows at the moment; it stays so for as long as the revision does. No two covers of a
    // run ever have the same revision.
    struct Recipe {
        int64_t revision = 0;
        std::vector<CoverPicture> pictures;
    };
    // The first cover that has to be made before this one can be, or this one; null if its file is there.
    CGalleryCover* FindUnmade();
    Recipe HandOut();
    // A file that CCoverCache::MakeCover has written, and what it has answered.
    struct MadeCover {
        QString file;
        QByteArray key;
    };
    // Moves the file, of the same folder and with the same extension, to its place. It is removed if the
    // cover has changed since its recipe was handed out, or has been made meanwhile.
    void Accept(int64_t recipeRevision, const MadeCover& cover);
    int64_t GetRevision() const { return revision; }

    // After a change of the gallery's content at that position: chooses name and pictures anew, and likewise
    // in all galleries above that show this one.
    void Update(int32_t changedPosition);

    // Looks whether a picture that the made cover shows has another file now, and has it composed anew then.
    // True if so.
    bool LookForChanges();

    // The cover of a child has moved from oldPath to its present path.
    void OnChildChanged(const QString& oldPath);

    // While held, the cover is that of an empty gallery whatever happens. For reading a project: galleries
    // released from the bottom up choose their covers once each.
    void Hold() { isHeld = true; }
    void Release();

private:
    bool Choose();
    int32_t PositionOf(const CPictureInfo* record) const;
    int32_t RekeyChild(int32_t childIndex, const QString& oldPath);
    std::vector<CoverPicture> GetShownPictures() const;
    std::vector<std::optional<FileStamp>> GetShownStamps() const;
    std::vector<CGalleryCover*> GetShownCovers() const;
    static std::vector<std::vector<CGalleryCover*>> WavesOf(const std::vector<CGalleryCover*>& covers);
    QString PathOf(const std::vector<CoverPicture>& shown) const;
    void Make();

    const int32_t galleryIndex;
    CPictureList& pictures;
    CCoverSite& site;
    int64_t revision;
    QString path;
    int32_t shownCount = 0; // pictures from the gallery's front
    QByteArray key;         // what the file that was made is kept under between runs; null for none
    // Of the pictures shown, when they were handed out or made; nothing for one that was not there.
    std::vector<std::optional<FileStamp>> shownStamps;
    bool isMade = false;
    bool isHandedOut = false; // its recipe, since it was chosen
    bool isHeld = false;
};
