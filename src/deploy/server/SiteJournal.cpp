#include "deploy/server/SiteJournal.h"

#include <algorithm>
#include <fcntl.h>

#include <QFile>
#include <QJsonDocument>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "deploy/server/SiteNames.h"
#include "resources/StringTable.h"

namespace {

const QString SenderField = QStringLiteral("sender");
const QString RunField = QStringLiteral("run");
const QString KeptField = QStringLiteral("kept");
const QString OnServerField = QStringLiteral("on_server");
const QString SentField = QStringLiteral("sent");
const QString StoredField = QStringLiteral("stored");
const QString RemovedField = QStringLiteral("removed");
const QString SizeField = QStringLiteral("size");
const QString HashField = QStringLiteral("hash");
const QString TimeField = QStringLiteral("time");

QByteArray Bytes(const QJsonObject& line)
{
    return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray HashOf(const QJsonObject& line)
{
    return QByteArray::fromHex(line[HashField].toString().toLatin1());
}

QJsonObject SentLine(const QString& path, const ManifestFile& file)
{
    return {{SentField, path},
            {SizeField, qint64{file.size}},
            {HashField, QString::fromLatin1(file.hash.toHex())},
            {TimeField, qint64{file.time}}};
}

QJsonObject RemovedLine(const QString& path)
{
    return QJsonObject{{RemovedField, path}};
}

QJsonObject StoredLine(const QString& path, const StoredFile& file)
{
    return {{StoredField, path},
            {SizeField, qint64{file.size}},
            {HashField, QString::fromLatin1(file.hash.toHex())}};
}

} // namespace

CSiteJournal::CSiteJournal(const QString& path) : path(path), file(-1)
{
    Load();
    if (!IsSender(sender)) {
        sender = MakeSender();
    }
}

void CSiteJournal::Load()
{
    QFile lines(path);
    if (!lines.open(QIODevice::ReadOnly)) {
        return;
    }
    while (!lines.atEnd()) {
        const QByteArray line = lines.readLine();
        const QJsonDocument document = QJsonDocument::fromJson(line);
        // The end of a run that was ended in the middle of a line.
        if (!line.endsWith('\n') || !document.isObject()) {
            return;
        }
        TakeLine(document.object());
    }
}

void CSiteJournal::TakeLine(const QJsonObject& line)
{
    const CMutexLock lock(mutex);
    if (line.contains(SenderField)) {
        sender = line[SenderField].toString();
    } else if (line.contains(RunField)) {
        sections.push_back({line[RunField].toString(), {}});
    } else if (line.contains(KeptField)) {
        kept = SiteManifest::Parse(line[KeptField].toString().toUtf8());
        wasOnServer = line[OnServerField].toBool();
    } else if (line.contains(StoredField) && !line.contains(HashField)) {
        stored.erase(line[StoredField].toString());
    } else if (line.contains(StoredField)) {
        stored[line[StoredField].toString()] = {line[SizeField].toInteger(), HashOf(line)};
    } else if (line.contains(SentField) && !sections.empty()) {
        const QString sent = line[SentField].toString();
        stored.erase(sent);
        sections.back().acts[sent] = ManifestFile{.size = line[SizeField].toInteger(),
                                                  .hash = HashOf(line),
                                                  .isSeen = false,
                                                  .time = line[TimeField].toInteger(),
                                                  .rest = {}};
    } else if (line.contains(RemovedField) && !sections.empty()) {
        sections.back().acts[line[RemovedField].toString()] = std::nullopt;
    }
}

std::set<QString> CSiteJournal::Amend(SiteManifest& manifest) const
{
    const CMutexLock lock(mutex);
    auto section = std::find_if(sections.begin(), sections.end(),
                                [&](const Section& other) { return other.run == manifest.run; });
    std::set<QString> amended;
    for (; section != sections.end(); ++section) {
        for (const auto& [sitePath, sent] : section->acts) {
            amended.insert(sitePath);
            if (!sent) {
                manifest.files.erase(sitePath);
                continue;
            }
            ManifestFile& listed = manifest.files[sitePath];
            listed.size = sent->size;
            listed.hash = sent->hash;
            listed.time = sent->time;
        }
    }
    return amended;
}

std::map<QString, StoredFile> CSiteJournal::GetStored() const
{
    const CMutexLock lock(mutex);
    return stored;
}

bool CSiteJournal::IsStored(const QString& sitePath) const
{
    const CMutexLock lock(mutex);
    return stored.contains(sitePath);
}

bool CSiteJournal::Follows(const QString& run) const
{
    const CMutexLock lock(mutex);
    return std::any_of(sections.begin(), sections.end(),
                       [&run](const Section& section) { return section.run == run; });
}

std::optional<SiteManifest> CSiteJournal::FindSubstitute() const
{
    std::optional<SiteManifest> substitute = kept;
    if (!substitute) {
        return std::nullopt;
    }
    Amend(*substitute);
    for (auto& [sitePath, listed] : substitute->files) {
        if (wasOnServer && KindOfSiteFile(sitePath) != SiteFileKind::Asset) {
            listed.hash.clear();
        }
    }
    return substitute;
}

void CSiteJournal::BeginRun(const QString& run, const std::set<QString>& stillStored)
{
    const CMutexLock lock(mutex);
    sections.push_back({run, {}});
    std::erase_if(stored, [&](const auto& entry) { return !stillStored.contains(entry.first); });
    // Also without what a run that was ended has left of a line.
    Rewrite();
    Open();
}

void CSiteJournal::NoteManifest(const SiteManifest& manifest, bool isOnServer)
{
    const CMutexLock lock(mutex);
    kept = manifest;
    wasOnServer = isOnServer;
    if (isOnServer) {
        sections.assign(1, {manifest.run, {}});
    }
    Rewrite();
    Open();
}

void CSiteJournal::Rewrite()
{
    QByteArray bytes = Bytes(QJsonObject{{SenderField, sender}});
    if (kept) {
        bytes += Bytes({{KeptField, QString::fromUtf8(kept->Format())}, {OnServerField, wasOnServer}});
    }
    for (const Section& section : sections) {
        bytes += Bytes(QJsonObject{{RunField, section.run}});
        for (const auto& [sitePath, sent] : section.acts) {
            bytes += Bytes(sent ? SentLine(sitePath, *sent) : RemovedLine(sitePath));
        }
    }
    // Last: a file that was sent is stored no longer.
    for (const auto& [sitePath, storedFile] : stored) {
        bytes += Bytes(StoredLine(sitePath, storedFile));
    }
    MakeDirectoryPath(ExtractFolder(path), DirectoryAccess::OwnerOnly);
    // Not synced: what is lost with the computer's power is sent again.
    const int error = ReplaceFile(path, bytes, Durability::Plain);
    if (error != 0) {
        throw CWin32Exception(error, Text(StringId::FileNotWritten, path));
    }
}

void CSiteJournal::Open()
{
    file.Reset(::open(QFile::encodeName(path).constData(), O_WRONLY | O_APPEND | O_CLOEXEC));
}

void CSiteJournal::NoteStored(const QString& sitePath, const StoredFile& storedFile)
{
    Append(StoredLine(sitePath, storedFile));
}

void CSiteJournal::NoteUnstored(const QString& sitePath)
{
    Append(QJsonObject{{StoredField, sitePath}});
}

void CSiteJournal::NoteSent(const QString& sitePath, const ManifestFile& sent)
{
    Append(SentLine(sitePath, sent));
}

void CSiteJournal::NoteRemoved(const QString& sitePath)
{
    Append(RemovedLine(sitePath));
}

void CSiteJournal::Append(const QJsonObject& line)
{
    const QByteArray bytes = Bytes(line);
    TakeLine(line);
    const CMutexLock lock(mutex);
    if (file.Get() >= 0) {
        [[maybe_unused]] const bool isWritten =
            file.WriteAll(bytes.constData(), static_cast<size_t>(bytes.size()));
    }
}
