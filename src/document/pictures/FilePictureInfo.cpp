#include "document/pictures/FilePictureInfo.h"

#include "common/FileSystem.h"

bool CFilePictureInfo::GetVariable(const QString& name, CVariant& out)
{
    if (name.isNull()) {
        return false;
    }
    // The name of the property is older than the choice of the last write time for it, and stays.
    if (EqualsIgnoreCase(name, QStringLiteral("file_creation_time"))) {
        out = CVariant::Date(date);
        return true;
    }
    return GetFileProperty(path, name, out) || variables.Get(name, out);
}

bool GetFileProperty(const QString& path, const QString& name, CVariant& out)
{
    const QString property = Lower(name);
    const QString fileName = ExtractLastName(path);
    if (property == QStringLiteral("file_name")) {
        out = CVariant(fileName);
        return true;
    }
    if (property == QStringLiteral("file_name_base")) {
        const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
        out = CVariant(dot < 0 ? fileName : fileName.left(dot));
        return true;
    }
    if (property == QStringLiteral("file_name_extension")) {
        // Odd on purpose: taken from the whole path, so that a name without a dot in a folder with one gives
        // the text behind the folder's dot.
        const qsizetype dot = path.lastIndexOf(QLatin1Char('.'));
        out = CVariant(dot < 0 ? QStringLiteral("") : path.mid(dot + 1));
        return true;
    }
    return false;
}
