#include "document/pictures/GalleryPictureInfo.h"

#include "document/galleries/Gallery.h"
#include "document/pictures/FilePictureInfo.h"

QString CGalleryPictureInfo::GetPath()
{
    return gallery.GetCoverPath();
}

DateValue CGalleryPictureInfo::GetDate()
{
    CVariant date;
    gallery.GetPictures().GetVariable(QStringLiteral("min_creation_date"), date);
    return date.GetType() == CVariant::Type::Date ? date.GetNumber() : 0;
}

bool CGalleryPictureInfo::GetVariable(const QString& name, CVariant& out)
{
    if (name.isNull()) {
        return false;
    }
    if (EqualsIgnoreCase(name, QStringLiteral("file_creation_time"))) {
        return gallery.GetPictures().GetVariable(QStringLiteral("max_creation_date"), out);
    }
    if (GetFileProperty(gallery.GetCoverName(), name, out)) {
        return true;
    }
    // A gallery answers for every name; for its entry a name without a value is no property.
    CVariant value;
    if (!gallery.GetObjectVariable(QStringLiteral("gallery"), name, value) || value.IsEmpty()) {
        return false;
    }
    out = value;
    return true;
}

void CGalleryPictureInfo::SetVariable(const QString& name, const CVariant& value)
{
    gallery.SetObjectVariable(QStringLiteral("gallery"), name, value);
}

const CVariableMap& CGalleryPictureInfo::GetVariables() const
{
    static const CVariableMap none;
    return none;
}

CVariableMap& CGalleryPictureInfo::GetVariables()
{
    // Emptied at each call, so that nothing written here shows up at another gallery's entry.
    static thread_local CVariableMap none;
    none.Clear();
    return none;
}

QString CGalleryPictureInfo::GetKey()
{
    return Lower(gallery.GetCoverName());
}
