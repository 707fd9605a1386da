#include "document/project/ProjectBackups.h"

#include <optional>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTimeZone>

#include "common/FileSystem.h"
#include "common/Text.h"
#include "common/xmldomutils.h"

namespace {

// Sorts by name as by time, and names one moment in every time zone.
const QString TimeFormat = QStringLiteral("yyyyMMdd-HHmmss-zzz");
const QString Extension = QStringLiteral(".gallery");
// In the folder of a project's states: where the project's file was when the latest one was kept.
const QString PathFile = QStringLiteral("path");

// Empty for a file that can't be read, has no id, or one that is no name for a folder.
QString IdOf(const QString& projectPath)
{
    static const QRegularExpression id(QStringLiteral("^[0-9a-f]{16,64}$"));
    if (!QFileInfo(projectPath).isFile()) {
        return QString();
    }
    try {
        const QString found = GetAttributeText(LoadDocument(projectPath)->GetRoot(), "id").GetString();
        return id.match(found).hasMatch() ? found : QString();
    } catch (const CXmlException&) {
        return QString();
    }
}

QStringList NamesOfStates(const QString& folder)
{
    return QDir(folder).entryList({QLatin1Char('*') + Extension}, QDir::Files, QDir::Name | QDir::Reversed);
}

QDateTime TimeOf(const QString& name)
{
    QDateTime time = QDateTime::fromString(name.chopped(Extension.size()), TimeFormat);
    time.setTimeZone(QTimeZone::utc());
    return time;
}

std::optional<CProjectBackups::State> ReadState(const QString& path)
{
    try {
        const auto document = LoadDocument(path);
        CProjectBackups::State state{.path = path, .changed = TimeOf(ExtractLastName(path))};
        for (const CXmlElement& gallery : document->GetRoot().GetChildren("gallery")) {
            ++state.galleries;
            for (const CXmlElement& picture : gallery.FindChild("picture_list").GetChildren("picture")) {
                state.pictures += GetAttributeText(picture, "path").IsEmpty() ? 0 : 1;
            }
        }
        return state;
    } catch (const CXmlException&) {
        return std::nullopt;
    }
}

} // namespace

CProjectBackups::CProjectBackups(const QString& folder) : folder(folder) {}

void CProjectBackups::Keep(const QString& projectPath, const QByteArray& bytes,
                           const QDateTime& changed) const
{
    if (folder.isEmpty()) {
        return;
    }
    QString states = FindFolder(projectPath);
    if (states.isEmpty()) {
        const QString id = IdOf(projectPath);
        states = id.isEmpty() ? FolderByPath(projectPath) : JoinPath(folder, id);
    }
    MakeDirectoryPath(states, DirectoryAccess::OwnerOnly);
    QStringList names = NamesOfStates(states);
    if (names.isEmpty() || !IsFileOf(JoinPath(states, names.front()), bytes)) {
        // Never before the latest state, whatever a clock says: the order of the names is that of the states.
        const QDateTime latest = names.isEmpty() ? QDateTime() : TimeOf(names.front());
        const QDateTime time = latest.isValid() && changed <= latest ? latest.addMSecs(1) : changed;
        const QString name = time.toUTC().toString(TimeFormat) + Extension;
        WriteFileAtomically(JoinPath(states, name), bytes);
        names.prepend(name);
    }
    WriteFileAtomically(JoinPath(states, PathFile), projectPath.toUtf8());
    for (qsizetype i = KeptStates; i < names.size(); ++i) {
        QFile::remove(JoinPath(states, names[i]));
    }
}

std::vector<CProjectBackups::State> CProjectBackups::List(const QString& projectPath) const
{
    std::vector<State> list;
    const QString states = folder.isEmpty() ? QString() : FindFolder(projectPath);
    if (states.isEmpty()) {
        return list;
    }
    for (const QString& name : NamesOfStates(states)) {
        if (const auto state = ReadState(JoinPath(states, name))) {
            list.push_back(*state);
        }
    }
    return list;
}

// Empty if there is none yet. By the id first: another project may lie at a path where one has been.
QString CProjectBackups::FindFolder(const QString& projectPath) const
{
    const QString id = IdOf(projectPath);
    if (!id.isEmpty() && FolderExists(JoinPath(folder, id))) {
        return JoinPath(folder, id);
    }
    if (FolderExists(FolderByPath(projectPath))) {
        return FolderByPath(projectPath);
    }
    if (!id.isEmpty()) {
        return QString();
    }
    for (const DirectoryEntry& entry : ListDirectory(folder)) {
        const QString states = JoinPath(folder, entry.name);
        if (IsFileOf(JoinPath(states, PathFile), projectPath.toUtf8())) {
            return states;
        }
    }
    return QString();
}

QString CProjectBackups::FolderByPath(const QString& projectPath) const
{
    const QByteArray hash = QCryptographicHash::hash(projectPath.toUtf8(), QCryptographicHash::Sha256);
    return JoinPath(folder, QStringLiteral("path-") + QString::fromLatin1(hash.toHex().left(32)));
}
