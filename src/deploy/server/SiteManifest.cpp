#include "deploy/server/SiteManifest.h"

#include <QJsonDocument>
#include <QList>
#include <QRandomGenerator>

#include "deploy/server/ContentHash.h"
#include "deploy/server/SiteNames.h"

namespace {

// To be raised when readers of the form before would misunderstand it; new fields alone need nothing.
constexpr int64_t formNumber = 1;

const QString FormField = QStringLiteral("vistorama-manifest");
const QString ProgramField = QStringLiteral("program");
const QString ProjectField = QStringLiteral("project");
const QString RunField = QStringLiteral("run");
const QString PathField = QStringLiteral("path");
const QString SizeField = QStringLiteral("size");
const QString HashField = QStringLiteral("hash");
const QString SeenField = QStringLiteral("seen");
const QString TimeField = QStringLiteral("time");
const QString CountField = QStringLiteral("files");

QByteArray Line(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<QJsonObject> ParseLine(const QByteArray& line)
{
    const QJsonDocument document = QJsonDocument::fromJson(line);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

QJsonObject ObjectOf(const QString& path, const ManifestFile& file)
{
    QJsonObject object = file.rest;
    object[PathField] = path;
    object[SizeField] = qint64{file.size};
    object[TimeField] = qint64{file.time};
    if (file.IsWhole()) {
        object[HashField] = QString::fromLatin1(file.hash.toHex());
    } else if (file.isSeen) {
        object[SeenField] = true;
    }
    return object;
}

// Nothing if it is damaged. Takes what it knows out of the object.
std::optional<ManifestFile> TakeFile(QJsonObject& object)
{
    const QJsonValue size = object.take(SizeField);
    const QJsonValue hash = object.take(HashField);
    ManifestFile file{.size = size.toInteger(-1),
                      .hash = QByteArray::fromHex(hash.toString().toLatin1()),
                      .isSeen = object.take(SeenField).toBool(),
                      .time = object.take(TimeField).toInteger(),
                      .rest = {}};
    const bool isHash = hash.isUndefined() || (hash.isString() && file.hash.size() == CContentHash::size);
    if (file.size < 0 || !isHash) {
        return std::nullopt;
    }
    file.rest = object;
    return file;
}

std::optional<SiteManifest> ParseHead(const QByteArray& line)
{
    auto head = ParseLine(line);
    if (!head || head->take(FormField).toInteger() != formNumber) {
        return std::nullopt;
    }
    SiteManifest manifest;
    manifest.program = head->take(ProgramField).toString();
    manifest.project = head->take(ProjectField).toString();
    manifest.run = head->take(RunField).toString();
    manifest.rest = *head;
    return manifest;
}

} // namespace

QByteArray SiteManifest::Format() const
{
    QJsonObject head = rest;
    head[FormField] = qint64{formNumber};
    head[ProgramField] = program;
    head[ProjectField] = project;
    head[RunField] = run;
    QByteArray bytes = Line(head);
    for (const auto& [path, file] : files) {
        bytes += Line(ObjectOf(path, file));
    }
    // The last line tells a whole manifest from one that was cut off between two lines.
    return bytes + Line(QJsonObject{{CountField, static_cast<qint64>(files.size())}});
}

std::optional<SiteManifest> SiteManifest::Parse(const QByteArray& bytes)
{
    const QList<QByteArray> lines = bytes.split('\n');
    // The head, the count and the nothing after the last line end.
    if (lines.size() < 3 || !lines.last().isEmpty()) {
        return std::nullopt;
    }
    auto manifest = ParseHead(lines.first());
    const auto count = ParseLine(lines[lines.size() - 2]);
    if (!manifest || !count || count->value(CountField).toInteger(-1) != lines.size() - 3) {
        return std::nullopt;
    }
    for (qsizetype i = 1; i < lines.size() - 2; ++i) {
        auto object = ParseLine(lines[i]);
        if (!object || !object->value(PathField).isString()) {
            return std::nullopt;
        }
        const QString path = object->take(PathField).toString();
        const auto file = TakeFile(*object);
        if (!file) {
            return std::nullopt;
        }
        if (IsSitePath(path)) {
            manifest->files[path] = *file;
        }
    }
    return manifest;
}

QString MakeRunName()
{
    return QStringLiteral("%1").arg(QRandomGenerator::system()->generate64(), 16, 16, QLatin1Char('0'));
}
