#pragma once

#include <cstdint>
#include <vector>

#include <QByteArray>
#include <QString>

#include "document/cover/CoverComposition.h"

class CGallery;
class CPictureInfo;

// The picture that stands for a gallery in its parent: made from the gallery's first pictures, in the
// temporary folder of the run. Its name is known at once; its pixels are made when somebody asks for the
// file, so that a project opens without opening a picture. Part of its gallery, used on its thread.
class CGalleryCover {
public:
    // As many pictures can show.
    static constexpr int32_t PictureCount = 4;

    explicit CGalleryCover(CGallery& gallery);
    CGalleryCover(const CGalleryCover&) = delete;
    CGalleryCover& operator=(const CGalleryCover&) = delete;

    // The file, made if need be, together with those that it shows. If none of the pictures can be read, it
    // holds the picture of an empty gallery under the same name. Throws CExceptionBase if it can't be
    // written.
    QString GetPath();

    // Makes the files of several covers that are not there yet, on all cores.
    static void MakeAll(const std::vector<CGallery*>& galleries);

    // The same path, with no file made.
    QString GetName();

    // --- For making the file on another thread, from values that no longer know the document.

    // What the cover shows at the moment; it stays so for as long as the revision does. No two covers of a
    // run ever have the same revision.
    struct Recipe {
        int64_t revision = 0;
        std::vector<CoverPicture> pictures;
    };
    // The first cover that has to be made before this one can be, or this one; null if its file is there.
    CGallery* FindUnmade();
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

    // Behind a change of the gallery's content at that position: chooses name and pictures anew, and likewise
    // in all galleries above that show this one.
    void Update(int32_t changedPosition);

    // The cover of a child has moved from oldPath to its present path.
    void OnChildChanged(const QString& oldPath);

    // While held, the cover is that of an empty gallery whatever happens. For reading a project: galleries
    // released from the bottom up choose their covers once each.
    void Hold() { isHeld = true; }
    void Release();

private:
    bool Choose();
    int32_t PositionOf(const CPictureInfo* record) const;
    int32_t RekeyChild(const CGallery& child, const QString& oldPath);
    std::vector<CoverPicture> GetShownPictures() const;
    std::vector<CGallery*> GetShownChildren() const;
    static std::vector<std::vector<CGallery*>> WavesOf(const std::vector<CGallery*>& galleries);
    QString PathOf(const std::vector<CoverPicture>& pictures) const;
    void Make();

    CGallery& gallery;
    int64_t revision;
    QString path;           // empty until first asked for
    int32_t shownCount = 0; // pictures from the gallery's front
    QByteArray key;         // what the file that was made is kept under between runs; null for none
    bool isMade = false;
    bool isHandedOut = false; // its recipe, since it was chosen
    bool isHeld = false;
};
