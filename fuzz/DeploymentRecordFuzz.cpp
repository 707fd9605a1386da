#include <fcntl.h>
#include <set>
#include <sys/stat.h>

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "Check.h"
#include "common/FileSystem.h"
#include "content/DeploymentRecord.h"

namespace {

using Names = std::set<QString>;

// What a record file begins with: its mark and the version of what it speaks of.
constexpr quint32 Magic = 0x56445231;
constexpr quint32 Version = 1;

// Every file is of one byte and of this second since 1970, so that an input can name their stamps.
constexpr time_t FileTime = 1'000'000'000;

// In the target. What the run writes again is in the first two; the run doesn't know of the others any more.
const char* const PageOfThisRun = "index.html";
const char* const ImageOfThisRun = "pictures/a.jpg";
const char* const OthersInTarget[] = {"pictures/b.jpg", "old/deep/c.html", "d", "..e"};

// Beside the target: in its parent, and in a folder whose name begins with the target's.
const char* const Outside[] = {"mine", "targets/mine", "record.mine", "old/deep/c.html"};

// A target folder, with neighbours. One for all inputs of a run.
class CTargetWorkshop {
public:
    QString Path(const QString& name) const { return directory.filePath(name); }
    QString InTarget(const QString& name) const { return Path(QStringLiteral("target/") + name); }
    QString GetTarget() const { return Path(QStringLiteral("target/")); }
    QString GetRecord() const { return Path(QStringLiteral("records/record")); }

    // All files are there as if no input had been tried before.
    void Restore() const
    {
        for (const char* const name : {PageOfThisRun, ImageOfThisRun}) {
            Write(InTarget(QLatin1String(name)));
        }
        for (const char* const name : OthersInTarget) {
            Write(InTarget(QLatin1String(name)));
        }
        for (const char* const name : Outside) {
            Write(Path(QLatin1String(name)));
        }
    }

    void WriteRecord(const QByteArray& bytes) const
    {
        MakeDirectoryPath(Path(QStringLiteral("records")));
        Check(ReplaceFile(GetRecord(), bytes, Durability::Plain) == 0, "the workshop can be written to");
    }

private:
    static void Write(const QString& path)
    {
        if (FileExists(path)) {
            return;
        }
        MakeDirectoryPath(path.section(QLatin1Char('/'), 0, -2));
        Check(ReplaceFile(path, "x", Durability::Plain) == 0, "the workshop can be written to");
        const timespec times[] = {{FileTime, 0}, {FileTime, 0}};
        Check(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) == 0,
              "a file's time can be set");
    }

    const QTemporaryDir directory;
};

// The last byte chooses: the bytes are the whole file, or what stands after the name of its target, which
// is another one in each run.
QByteArray RecordFile(QByteArray input, const QString& target)
{
    if (input.isEmpty() || input.back() % 2 == 0) {
        return input;
    }
    input.chop(1);
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << Magic << Version << target;
    return bytes + input;
}

// The files that a saved record names.
Names NamesIn(const QString& path)
{
    QFile file(path);
    Check(file.open(QIODevice::ReadOnly), "what was saved can be read");
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_6_4);
    quint32 magic = 0;
    quint32 version = 0;
    QString target;
    quint32 count = 0;
    stream >> magic >> version >> target >> count;
    Names names;
    for (quint32 i = 0; i < count; ++i) {
        QString name;
        qint64 number = 0;
        bool hasImage = false;
        stream >> name >> number >> number >> hasImage;
        if (hasImage) {
            QString text;
            bool isWhole = false;
            stream >> text >> number >> number >> number >> number >> text >> isWhole;
        }
        names.insert(name);
    }
    qint64 openSince = -1;
    stream >> openSince;
    Check(stream.status() == QDataStream::Ok && stream.atEnd(), "a saved record is whole");
    Check(openSince == 0, "a saved record has no run under way");
    Check(names.size() == count, "a record names each file once");
    return names;
}

void CheckInside(const Names& names, const QString& target)
{
    for (const QString& name : names) {
        const QString path = QDir::cleanPath(target + name);
        Check(path.size() > target.size() && path.startsWith(target), "a record names files of its target");
    }
}

// What is read is what was saved: a second reading gives the same file.
Names CheckSaving(const CTargetWorkshop& workshop)
{
    CDeploymentRecord(workshop.GetRecord(), workshop.GetTarget()).Save();
    const QByteArray first = ReadWholeFile(workshop.GetRecord());
    CDeploymentRecord(workshop.GetRecord(), workshop.GetTarget()).Save();
    Check(ReadWholeFile(workshop.GetRecord()) == first, "a saved record comes back the same");
    const Names names = NamesIn(workshop.GetRecord());
    CheckInside(names, workshop.GetTarget());
    return names;
}

const CDeploymentRecord::Origin SomeOrigin{
    .sourcePath = QStringLiteral("a.jpg"),
    .source = {.size = 1, .modified = 2, .changed = 3, .sample = 4},
    .key = QStringLiteral("chain"),
};

// An image that is known, one of a file that has no stamp of its own, and a page; none outside the target.
void Run(CDeploymentRecord& record, const CTargetWorkshop& workshop)
{
    const QString image = workshop.InTarget(QLatin1String(ImageOfThisRun));
    if (const CDeploymentRecord::Image* const known = record.FindCurrent(image, SomeOrigin)) {
        Check(known->origin.key == SomeOrigin.key && known->origin.source == SomeOrigin.source &&
                  known->origin.sourcePath == SomeOrigin.sourcePath,
              "an image is known by its origin");
    } else {
        record.NoteImage(image, {SomeOrigin, true});
    }
    Check(record.FindCurrent(image, SomeOrigin) != nullptr, "an image that was noted is known");
    CDeploymentRecord::Origin other = SomeOrigin;
    other.key += QLatin1Char('2');
    Check(record.FindCurrent(image, other) == nullptr, "an image of another chain is another one");
    Check(record.FindCurrent(workshop.InTarget(QStringLiteral("none.jpg")), SomeOrigin) == nullptr,
          "an image that isn't there is not known");
    record.NoteFile(workshop.InTarget(QLatin1String(PageOfThisRun)));
    for (const char* const name : Outside) {
        record.NoteFile(workshop.Path(QLatin1String(name)));
        record.NoteImage(workshop.Path(QLatin1String(name)), {SomeOrigin, true});
    }
}

void CheckRemoved(const CTargetWorkshop& workshop, const Names& known)
{
    for (const char* const name : {PageOfThisRun, ImageOfThisRun}) {
        Check(FileExists(workshop.InTarget(QLatin1String(name))), "what a run has written stays");
    }
    for (const char* const name : OthersInTarget) {
        Check(FileExists(workshop.InTarget(QLatin1String(name))) || known.count(QLatin1String(name)) != 0,
              "only what the record names is removed");
    }
    for (const char* const name : Outside) {
        Check(FileExists(workshop.Path(QLatin1String(name))), "nothing outside the target is removed");
    }
    Check(FolderExists(workshop.GetTarget()), "the target itself stays");
}

} // namespace

// Bytes of the record of a target folder, with the run of a deployment that finds it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    static const CTargetWorkshop workshop;
    workshop.Restore();
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    workshop.WriteRecord(RecordFile(input, workshop.GetTarget()));
    const Names known = CheckSaving(workshop);
    CDeploymentRecord record(workshop.GetRecord(), workshop.GetTarget(), std::chrono::milliseconds(0));
    Run(record, workshop);
    record.RemoveLeftovers();
    CheckRemoved(workshop, known);
    record.Save();
    Check(NamesIn(workshop.GetRecord()) == Names{QLatin1String(PageOfThisRun), QLatin1String(ImageOfThisRun)},
          "a record names what the last run has written");
    return 0;
}
