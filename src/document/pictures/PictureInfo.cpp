#include "document/pictures/PictureInfo.h"

#include <algorithm>
#include <tuple>

#include "common/FileSystem.h"
#include "common/Text.h"

namespace {

// file_name, file_name_base and file_name_extension of a path.
std::optional<CVariant> FindFileProperty(const QString& path, const QString& name)
{
    const QString property = Lower(name);
    const QString fileName = ExtractLastName(path);
    if (property == QStringLiteral("file_name")) {
        return CVariant(fileName);
    }
    if (property == QStringLiteral("file_name_base")) {
        const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
        return CVariant(dot < 0 ? fileName : fileName.left(dot));
    }
    if (property == QStringLiteral("file_name_extension")) {
        // Odd on purpose: taken from the whole path, so that a name without a dot in a folder with one gives
        // the text after the folder's dot.
        const qsizetype dot = path.lastIndexOf(QLatin1Char('.'));
        return CVariant(dot < 0 ? QStringLiteral("") : path.mid(dot + 1));
    }
    return std::nullopt;
}

// Layouts ask for the last write time under this name.
bool IsDateProperty(const QString& name)
{
    return EqualsIgnoreCase(name, QStringLiteral("file_creation_time"));
}

} // namespace

bool IsNameSuffix(const QString& text)
{
    constexpr qsizetype longest = 32;
    return !text.isEmpty() && text.size() <= longest &&
           std::all_of(text.begin(), text.end(), [](QChar character) {
               return character.unicode() < 128 &&
                      (character.isLetterOrNumber() || character == QLatin1Char('-') ||
                       character == QLatin1Char('_'));
           });
}

std::optional<CVariant> CFilePictureInfo::GetVariable(const QString& name) const
{
    if (name.isNull()) {
        return std::nullopt;
    }
    if (IsDateProperty(name)) {
        return CVariant::Date(date);
    }
    if (const auto property = FindFileProperty(path, name)) {
        return property;
    }
    return variables.Find(name);
}

bool CFilePictureInfo::operator==(const CFilePictureInfo& other) const
{
    const auto valuesOf = [](const CFilePictureInfo& record) {
        return std::tie(record.path, record.thumbnailPath, record.angle, record.isThere, record.date,
                        record.size, record.tracedPath, record.trace, record.variables,
                        record.GetNameSuffix(), record.GetRest());
    };
    return valuesOf(*this) == valuesOf(other);
}

void CFilePictureInfo::SetState(const FileState& state)
{
    isThere = state.isThere;
    date = state.date;
    size = state.isThere ? state.size : size;
}

void CFilePictureInfo::SetTrace(const FileTrace& newTrace)
{
    trace = newTrace;
    tracedPath = path;
    size = isThere ? size : trace.size;
}

FileTrace CFilePictureInfo::GetTrace() const
{
    FileTrace current = path == tracedPath ? trace : FileTrace();
    current.size = size;
    return current;
}

void CFilePictureInfo::SetPath(const QString& newPath)
{
    path = newPath;
    size = path == tracedPath ? trace.size : -1;
}

std::optional<CVariant> CGalleryPictureInfo::GetVariable(const QString& name) const
{
    if (name.isNull()) {
        return std::nullopt;
    }
    if (IsDateProperty(name)) {
        return CVariant::Date(gallery.GetLatestDate());
    }
    if (const auto property = FindFileProperty(gallery.GetCoverName(), name)) {
        return property;
    }
    // A gallery answers for every name; for its entry a name without a value is no property.
    const CVariant value = gallery.FindGalleryVariable(name);
    return value.IsEmpty() ? std::nullopt : std::optional(value);
}

void CGalleryPictureInfo::SetVariable(const QString& name, const CVariant& value)
{
    gallery.SetGalleryVariable(name, value);
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
