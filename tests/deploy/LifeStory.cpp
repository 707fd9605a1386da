#include "LifeStory.h"

#include <algorithm>

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "deploy/Deployment.h"
#include "imaging/Image.h"

namespace {

constexpr QSize PictureSize(4, 3);

// Names that meet in every way: by case, by cleaning, by a turn, by a child's cover.
const char* const Names[] = {"IMG_0001.png",    "img_0001.png", "IMG_0001.bmp", "D.png",
                             "D_r1.png",        "a b.png",      "a10b.png",     "k800600f_1.png",
                             "caf\xc3\xa9.png", "caf79.png"};

// Differs for all numbers below 256.
uint32_t ColourOf(int number)
{
    const auto part = [&](int factor) {
        return static_cast<uint32_t>(number * factor % 256);
    };
    return part(37) << 16 | part(101) << 8 | part(197);
}

QByteArray BytesOf(int number)
{
    static std::map<int, QByteArray> known;
    QByteArray& bytes = known[number];
    if (bytes.isEmpty()) {
        QByteArray pixels;
        for (int i = 0; i < PictureSize.width() * PictureSize.height(); ++i) {
            for (const int shift : {16, 8, 0}) {
                pixels += static_cast<char>(ColourOf(number) >> shift & 0xff);
            }
            pixels += '\xff';
        }
        const CScratchFolder scratch;
        const QString path = scratch.Path(QStringLiteral("a.png"));
        CImage::FromRgba(PictureSize, pixels).Save(path, {ImageEncoding::Format::Png, 95});
        // After the end of the picture, which readers pass over: no two files have one size.
        bytes = ReadWholeFile(path) + QByteArray(number, ' ');
    }
    return bytes;
}

QByteArray WithoutNewAttributes(QByteArray project)
{
    QString text = QString::fromUtf8(project);
    static const QRegularExpression added(QStringLiteral(" (id|relative|size|name_suffix)=\"[^\"]*\""));
    return text.remove(added).toUtf8();
}

} // namespace

CLifeStory::CLifeStory(CProjectFixture& fixture, uint32_t seed)
    : fixture(fixture), random(seed), root(fixture.scratch.Path(QStringLiteral("story/")))
{}

std::string CLifeStory::Tell(int steps)
{
    QDir(root).removeRecursively();
    MakeWorld();
    for (int i = 0; i < steps && failure.empty(); ++i) {
        try {
            Step();
        } catch (const CExceptionBase& thrown) {
            Fail(QStringLiteral("thrown: ") + thrown.GetDescription());
        }
    }
    return failure;
}

void CLifeStory::MakeWorld()
{
    for (const char* name : {"disk1", "disk2"}) {
        folders[QString::fromLatin1(name)] = root + QString::fromLatin1(name) + QStringLiteral("/photos/");
    }
    folders[QStringLiteral("home")] = root + QStringLiteral("home0/");
    folders[QStringLiteral("2019")] = root + QStringLiteral("home0/2019/");
    folders[QStringLiteral("2020")] = root + QStringLiteral("home0/2020/");
    for (const auto& [name, path] : folders) {
        MakeDirectoryPath(path);
    }
    projectPath = root + QStringLiteral("home0/trip.gallery");
    for (int i = 0; i < 6; ++i) {
        MakeFile();
    }
    Open();
    hasChild = Random(2) == 0;
    if (hasChild) {
        CGallery& child = *project->FindGallery(project->AddChildGallery(0));
        child.AddPicture(PathOf(files.front()));
    }
    Save();
}

void CLifeStory::Step()
{
    using Action = void (CLifeStory::*)();
    static const struct {
        const char* name;
        Action action;
        int weight;
    } actions[] = {
        {"add", &CLifeStory::AddPicture, 8},
        {"add again", &CLifeStory::AddAgain, 2},
        {"describe", &CLifeStory::Describe, 4},
        {"turn", &CLifeStory::Turn, 3},
        {"move", &CLifeStory::Move, 2},
        {"remove", &CLifeStory::Remove, 1},
        {"save", &CLifeStory::Save, 4},
        {"crash", &CLifeStory::Crash, 2},
        {"reopen", &CLifeStory::Reopen, 3},
        {"second program", &CLifeStory::ChangeInASecondProgram, 1},
        {"older version", &CLifeStory::SaveByAnOlderVersion, 1},
        {"save as", &CLifeStory::SaveAs, 1},
        {"publish", &CLifeStory::Publish, 2},
        {"plug or unplug", &CLifeStory::PlugOrUnplug, 3},
        {"move home", &CLifeStory::MoveHome, 2},
        {"replace", &CLifeStory::ReplaceAFile, 1},
        {"rename", &CLifeStory::RenameAFile, 2},
        {"stranger", &CLifeStory::MakeAStranger, 2},
    };
    int total = 0;
    for (const auto& row : actions) {
        total += row.weight;
    }
    int chosen = Random(total);
    for (const auto& row : actions) {
        chosen -= row.weight;
        if (chosen < 0) {
            told += std::string(told.empty() ? "" : ", ") + row.name;
            (this->*row.action)();
            return;
        }
    }
}

QString CLifeStory::PathOf(const File& file) const
{
    const QString& folder = folders.at(file.folder);
    return folder.isEmpty() ? QString() : folder + file.name;
}

void CLifeStory::WritePicture(const File& file) const
{
    WriteFileAtomically(PathOf(file), BytesOf(file.number));
}

// Nothing if all places of the chosen folder are taken, or if its disk is unplugged.
std::optional<size_t> CLifeStory::MakeFile()
{
    auto folder = folders.begin();
    std::advance(folder, Random(static_cast<int>(folders.size())));
    const File file{nextNumber, folder->first, QString::fromUtf8(Names[Random(std::size(Names))])};
    if (folder->second.isEmpty() || !usedPlaces.insert(file.folder + file.name).second) {
        return std::nullopt;
    }
    ++nextNumber;
    WritePicture(file);
    files.push_back(file);
    return files.size() - 1;
}

void CLifeStory::Open()
{
    project = std::make_unique<CGalleryProject>(fixture.GetEnvironment());
    project->Open(projectPath);
    Check(*project, entries, "opened");
}

// The place of an entry in the list, which may hold a child gallery as well.
int32_t CLifeStory::PositionOf(size_t entry)
{
    const CPictureList& pictures = Gallery().GetPictures();
    for (int32_t position = 0; position < pictures.GetCount(); ++position) {
        if (dynamic_cast<const CFilePictureInfo*>(pictures.GetAt(position)) != nullptr && entry-- == 0) {
            return position;
        }
    }
    return -1;
}

void CLifeStory::AddPicture()
{
    MakeFile();
    const size_t file = static_cast<size_t>(Random(static_cast<int>(files.size())));
    const bool known =
        std::any_of(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.file == file; });
    if (known || PathOf(files[file]).isEmpty()) {
        return;
    }
    Gallery().AddPicture(PathOf(files[file]));
    entries.push_back({file, QString(), 0});
}

void CLifeStory::AddAgain()
{
    for (const Entry& entry : entries) {
        const QString stored =
            Gallery().GetPictures().GetAt(PositionOf(static_cast<size_t>(&entry - &entries[0])))->GetPath();
        if (QFile::exists(stored)) {
            Gallery().AddPicture(stored);
        }
    }
    Check(*project, entries, "added again");
}

void CLifeStory::Describe()
{
    if (entries.empty()) {
        return;
    }
    const auto chosen = static_cast<size_t>(Random(static_cast<int>(entries.size())));
    entries[chosen].text = QStringLiteral("Text <%1> \u00e4\n&").arg(Random(1000));
    Gallery()
        .GetPictures()
        .GetAt(PositionOf(chosen))
        ->SetVariable(QStringLiteral("title"), entries[chosen].text);
}

void CLifeStory::Turn()
{
    if (entries.empty()) {
        return;
    }
    const auto chosen = static_cast<size_t>(Random(static_cast<int>(entries.size())));
    entries[chosen].angle = (entries[chosen].angle + 1) % 4;
    Gallery().RotatePicture(PositionOf(chosen), true);
}

void CLifeStory::Move()
{
    if (entries.size() < 2) {
        return;
    }
    const auto a = static_cast<size_t>(Random(static_cast<int>(entries.size())));
    const auto b = static_cast<size_t>(Random(static_cast<int>(entries.size())));
    Gallery().MovePicture(PositionOf(a), PositionOf(b));
    std::swap(entries[a], entries[b]);
}

void CLifeStory::Remove()
{
    if (entries.empty()) {
        return;
    }
    const int chosen = Random(static_cast<int>(entries.size()));
    Gallery().RemovePicture(PositionOf(static_cast<size_t>(chosen)));
    entries.erase(entries.begin() + chosen);
}

void CLifeStory::Save()
{
    project->Save(projectPath);
    committed = entries;
}

void CLifeStory::Crash()
{
    entries = committed;
    Open();
}

void CLifeStory::Reopen()
{
    Save();
    Open();
}

// Somebody has seized the lock; the first program ends without saving.
void CLifeStory::ChangeInASecondProgram()
{
    CGalleryProject second(fixture.GetEnvironment());
    second.Open(projectPath);
    Check(second, committed, "second program");
    if (!committed.empty()) {
        committed.front().text = QStringLiteral("second");
        CPictureList& pictures = second.GetRootGallery()->GetPictures();
        for (int32_t i = 0; i < pictures.GetCount(); ++i) {
            if (dynamic_cast<const CFilePictureInfo*>(pictures.GetAt(i)) != nullptr) {
                pictures.GetAt(i)->SetVariable(QStringLiteral("title"), committed.front().text);
                break;
            }
        }
    }
    second.Save(projectPath);
    Crash();
}

// It drops nothing, but what it doesn't know. Where a picture is not there, it has nothing but its name to be
// found by.
void CLifeStory::SaveByAnOlderVersion()
{
    Save();
    project->LookForFiles();
    if (!project->GetAbsentFiles().empty()) {
        return;
    }
    WriteFileAtomically(projectPath, WithoutNewAttributes(ReadWholeFile(projectPath)));
    Open();
    Save();
}

void CLifeStory::SaveAs()
{
    const QByteArray before = ReadWholeFile(projectPath);
    const QString former = projectPath;
    const QString formerId = project->GetId();
    projectPath = ExtractFolder(projectPath) + QStringLiteral("trip%1.gallery").arg(Random(1000));
    Save();
    if (projectPath != former && ReadWholeFile(former) != before) {
        Fail(QStringLiteral("the former file was changed"));
    }
    if (projectPath != former && project->GetId() == formerId) {
        Fail(QStringLiteral("two projects of one id"));
    }
    Open();
}

void CLifeStory::PlugOrUnplug()
{
    const QString disk = Random(2) == 0 ? QStringLiteral("disk1") : QStringLiteral("disk2");
    if (folders[disk].isEmpty()) {
        QDir().rename(root + disk + QStringLiteral(".away"), root + disk);
        folders[disk] = unplugged[disk];
    } else {
        unplugged[disk] = folders[disk];
        QDir().rename(root + disk, root + disk + QStringLiteral(".away"));
        folders[disk].clear();
    }
    project->LookForFiles();
    Check(*project, entries, "plugged or unplugged");
}

void CLifeStory::MoveHome()
{
    Save();
    project->LookForFiles();
    std::vector<bool> wasThere;
    for (size_t i = 0; i < entries.size(); ++i) {
        wasThere.push_back(Gallery().GetPictures().GetAt(PositionOf(i))->IsThere());
    }
    project.reset();
    const QString former = folders[QStringLiteral("home")];
    const QString moved = root + QStringLiteral("home%1/").arg(++homes);
    QDir().rename(former, moved);
    for (const char* name : {"home", "2019", "2020"}) {
        QString& path = folders[QString::fromLatin1(name)];
        path = moved + path.mid(former.size());
    }
    projectPath = moved + ExtractLastName(projectPath);
    Open();
    for (size_t i = 0; i < entries.size(); ++i) {
        if (wasThere[i] && !Gallery().GetPictures().GetAt(PositionOf(i))->IsThere()) {
            Fail(QStringLiteral("not found after the move: ") + PathOf(files[entries[i].file]));
        }
    }
}

void CLifeStory::ReplaceAFile()
{
    File& file = files[static_cast<size_t>(Random(static_cast<int>(files.size())))];
    if (!PathOf(file).isEmpty()) {
        file.number = nextNumber++;
        WritePicture(file);
    }
}

// To another name or another case: it is not where the project has left it, unless it comes back.
void CLifeStory::RenameAFile()
{
    File& file = files[static_cast<size_t>(Random(static_cast<int>(files.size())))];
    const QString former = PathOf(file);
    const QString name = Random(2) == 0 ? file.name.toUpper() : QStringLiteral("x%1.png").arg(nextNumber++);
    if (former.isEmpty() || !usedPlaces.insert(file.folder + name).second) {
        return;
    }
    file.name = name;
    QFile::rename(former, PathOf(file));
    project->LookForFiles();
    Check(*project, entries, "renamed");
}

void CLifeStory::MakeAStranger()
{
    static const char* const places[] = {"notes.txt", "index.html", "pictures/mine.png", "Common/mine.css",
                                         "Plain/x"};
    const QString path =
        root + QStringLiteral("site/") + QString::fromLatin1(places[Random(std::size(places))]);
    if (!QFile::exists(path)) {
        MakeDirectoryPath(ExtractFolder(path));
        strangers[path] = QByteArray("mine ") + QByteArray::number(Random(1000));
        WriteFileAtomically(path, strangers[path]);
    }
}

void CLifeStory::Publish()
{
    Save();
    const QString site = root + QStringLiteral("site");
    const auto before = Snapshot(site);
    CDeployment run(*project, {.target = FolderTarget{site},
                               .leaveOutMissing = Random(2) == 0,
                               .recordsFolder = root + QStringLiteral("records"),
                               .sitesFolder = root + QStringLiteral("sites")});
    run.Start({});
    run.WaitFinished();
    if (!std::holds_alternative<DeployDone>(run.GetEnd())) {
        if (Snapshot(site) != before) {
            Fail(QStringLiteral("a deployment that was refused has written"));
        }
        told += " (refused)";
    } else {
        CheckSite(site, entries);
    }
    for (const auto& [path, bytes] : strangers) {
        if (!QFile::exists(path) || ReadWholeFile(path) != bytes) {
            Fail(QStringLiteral("somebody else's file was changed: ") + path);
        }
    }
    Check(*project, entries, "published");
    Save();
}

std::map<QString, QByteArray> CLifeStory::Snapshot(const QString& folder) const
{
    std::map<QString, QByteArray> files;
    for (const QString& name : FilesBelow(folder)) {
        files[name] = ReadWholeFile(JoinPath(folder, name));
    }
    return files;
}

// Page by page the picture of the entry that it shows: by its colour, whatever the names are.
void CLifeStory::CheckSite(const QString& site, const Entries& expected)
{
    static const QRegularExpression source(QStringLiteral("src=\"(pictures/[^\"]*)\""));
    const CPictureList& pictures = Gallery().GetPictures();
    std::set<QString> seen;
    size_t entry = 0;
    int page = 0;
    for (int32_t position = 0; position < pictures.GetCount(); ++position) {
        const bool isFile = dynamic_cast<const CFilePictureInfo*>(pictures.GetAt(position)) != nullptr;
        const size_t at = isFile ? entry++ : 0;
        if (isFile && !pictures.GetAt(position)->IsThere()) {
            continue;
        }
        const QString name =
            page == 0 ? QStringLiteral("index.html") : QStringLiteral("index%1.html").arg(page);
        ++page;
        const auto match = source.match(QString::fromUtf8(ReadWholeFile(JoinPath(site, name))));
        const QString path = JoinPath(site, match.captured(1));
        if (!seen.insert(path).second) {
            Fail(QStringLiteral("two pictures share ") + path);
        }
        if (!isFile) {
            continue;
        }
        const QByteArray pixel = CImage::FromFile(path).GetRgba().left(3);
        const uint32_t colour = ColourOf(files[expected[at].file].number);
        const char wanted[] = {static_cast<char>(colour >> 16), static_cast<char>(colour >> 8),
                               static_cast<char>(colour)};
        if (pixel != QByteArray(wanted, 3)) {
            Fail(QStringLiteral("another picture is published as ") + path);
        }
    }
}

void CLifeStory::Check(CGalleryProject& opened, const Entries& expected, const char* when)
{
    const CPictureList& pictures = opened.GetRootGallery()->GetPictures();
    size_t at = 0;
    for (int32_t position = 0; position < pictures.GetCount(); ++position) {
        const auto* const record = dynamic_cast<const CFilePictureInfo*>(pictures.GetAt(position));
        if (!record) {
            continue;
        }
        const QString where = QStringLiteral("%1, %2: ").arg(QString::fromLatin1(when), record->GetPath());
        if (at == expected.size()) {
            Fail(where + QStringLiteral("a picture that nobody has added"));
            return;
        }
        const Entry& entry = expected[at++];
        if (record->GetVariable(QStringLiteral("title")).value_or(CVariant(QString())).GetString() !=
            entry.text) {
            Fail(where + QStringLiteral("another text than ") + entry.text);
        }
        if (record->GetAngle() != entry.angle) {
            Fail(where + QStringLiteral("another angle"));
        }
        if (record->IsThere() != QFile::exists(record->GetPath())) {
            Fail(where + QStringLiteral("wrong about its being there"));
        }
        if (record->IsThere() && ReadWholeFile(record->GetPath()) != BytesOf(files[entry.file].number)) {
            Fail(where + QStringLiteral("somebody else's file"));
        }
    }
    if (at != expected.size()) {
        Fail(QStringLiteral("%1: %2 pictures are gone")
                 .arg(QString::fromLatin1(when))
                 .arg(expected.size() - at));
    }
}

void CLifeStory::Fail(const QString& what)
{
    if (failure.empty()) {
        failure = what.toStdString() + " after: " + told;
    }
}
