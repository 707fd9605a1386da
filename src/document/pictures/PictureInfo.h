#pragma once

#include <cstdint>
#include <optional>

#include <QString>

#include "common/Variant.h"
#include "common/XmlRest.h"
#include "document/files/FileTrace.h"

// One entry of a gallery's content: a picture file, or a link to a child gallery. Layouts can't tell the two
// apart. Owned by the CPictureList that holds it; used on the thread of that list.
class CPictureInfo {
public:
    virtual ~CPictureInfo() = default;

    // The file to show. It exists when this returns, unless the user has taken it away.
    virtual QString GetPath() const = 0;
    // Empty for a record without a thumbnail of its own.
    virtual QString GetThumbnailPath() const { return QString(); }
    virtual DateValue GetDate() const = 0;
    // A property or variable, by a name without regard to case. Nothing if there is none or the name is null.
    virtual std::optional<CVariant> GetVariable(const QString& name) const = 0;
    virtual void SetVariable(const QString& name, const CVariant& value) = 0;
    // Quarter turns clockwise, 0 to 3.
    virtual int32_t GetAngle() const = 0;
    virtual void SetAngle(int32_t angle) = 0;
    virtual const CVariableMap& GetVariables() const = 0;
    virtual CVariableMap& GetVariables() = 0;
    // False if the file was not there when it was last looked for. A child gallery is always there.
    virtual bool IsThere() const { return true; }

    // Keeps the names of published and cached files of two pictures apart: part of every such name. Empty for
    // nearly all. Saved with the project, since published addresses are to stay.
    const QString& GetNameSuffix() const { return nameSuffix; }
    void SetNameSuffix(const QString& suffix) { nameSuffix = suffix; }

    // What the project's file says of it beyond what this version knows.
    const CXmlRest& GetRest() const { return rest; }
    void SetRest(const CXmlRest& newRest) { rest = newRest; }

    // The path under which a list keeps the record. Unlike GetPath it never makes a file.
    virtual QString GetKey() const { return GetPath(); }

protected:
    CPictureInfo() = default;
    CPictureInfo(const CPictureInfo&) = default;
    CPictureInfo& operator=(const CPictureInfo&) = default;

private:
    QString nameSuffix;
    CXmlRest rest;
};

// Whether a text can be a suffix of names: up to 32 letters and digits of ASCII, "-" and "_". Others could
// lead out of the folder that takes the files.
bool IsNameSuffix(const QString& text);

// A picture file. Nothing of it is read but its last write time.
class CFilePictureInfo final : public CPictureInfo {
public:
    CFilePictureInfo(const QString& path, int32_t angle) : path(path), angle(angle) {}

    QString GetPath() const override { return path; }
    QString GetThumbnailPath() const override { return thumbnailPath; }
    // 0 for a file that is not there or could not be queried.
    DateValue GetDate() const override { return date; }
    std::optional<CVariant> GetVariable(const QString& name) const override;
    void SetVariable(const QString& name, const CVariant& value) override { variables.Set(name, value); }
    int32_t GetAngle() const override { return angle; }
    void SetAngle(int32_t newAngle) override { angle = newAngle; }
    const CVariableMap& GetVariables() const override { return variables; }
    CVariableMap& GetVariables() override { return variables; }
    bool IsThere() const override { return isThere; }

    void SetThumbnailPath(const QString& newPath) { thumbnailPath = newPath; }
    void SetDate(DateValue newDate) { date = newDate; }
    // Bytes, as when it was last there; -1 if that isn't known.
    int64_t GetSize() const { return size; }
    // The size of an absent file stays the one that is known.
    void SetState(const FileState& state);

    // As read from the project's file. It belongs to the path that the record has then.
    void SetTrace(const FileTrace& newTrace);
    // Without a relative path if none was read for the record's present path.
    FileTrace GetTrace() const;

    // For the list that owns the record: it has to be kept under its path.
    void SetPath(const QString& newPath);

    // In all that is known of it, the state of its file included.
    bool operator==(const CFilePictureInfo& other) const;

private:
    QString path;
    QString thumbnailPath;
    CVariableMap variables;
    DateValue date = 0;
    int64_t size = -1;
    FileTrace trace;
    QString tracedPath; // that the trace belongs to
    int32_t angle;
    bool isThere = true;
};

// A gallery as the entry that stands for it in its parent sees it.
class CListedGallery {
public:
    // The name of the cover's file, whether it is made or not; GetCoverPath makes it if need be.
    virtual QString GetCoverName() const = 0;
    virtual QString GetCoverPath() = 0;
    // Of its pictures; 0 for none.
    virtual DateValue GetEarliestDate() const = 0;
    virtual DateValue GetLatestDate() const = 0;
    // Of the object "gallery". Empty for a name without a value.
    virtual CVariant FindGalleryVariable(const QString& name) const = 0;
    virtual void SetGalleryVariable(const QString& name, const CVariant& value) = 0;

protected:
    ~CListedGallery() = default;
};

// The entry that stands for a child gallery among its parent's pictures; it shows the child's cover. Its
// variables live in the child gallery.
class CGalleryPictureInfo final : public CPictureInfo {
public:
    // The gallery is borrowed and stays in the project for as long as this entry is listed.
    CGalleryPictureInfo(CListedGallery& gallery, int32_t galleryIndex)
        : gallery(gallery), galleryIndex(galleryIndex)
    {}

    int32_t GetGalleryIndex() const { return galleryIndex; }

    // The child's cover, made if need be.
    QString GetPath() const override { return gallery.GetCoverPath(); }
    // The date of the child's oldest picture; 0 if it has none.
    DateValue GetDate() const override { return gallery.GetEarliestDate(); }
    std::optional<CVariant> GetVariable(const QString& name) const override;
    void SetVariable(const QString& name, const CVariant& value) override;
    // Kept, though a cover is shown upright.
    int32_t GetAngle() const override { return angle; }
    void SetAngle(int32_t newAngle) override { angle = newAngle; }
    // Always empty.
    const CVariableMap& GetVariables() const override;
    CVariableMap& GetVariables() override;
    QString GetKey() const override { return gallery.GetCoverName(); }

private:
    CListedGallery& gallery;
    const int32_t galleryIndex;
    int32_t angle = 0;
};
