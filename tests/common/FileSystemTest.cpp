#include "common/FileSystem.h"

#include <csignal>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include "common/Exceptions.h"
#include "support/ScratchFolder.h"

using testing::ElementsAre;

namespace {

std::vector<QString> NamesIn(const QString& folder)
{
    std::vector<QString> names;
    for (const DirectoryEntry& entry : ListDirectory(folder)) {
        names.push_back(entry.name);
    }
    return names;
}

QString Native(const QByteArray& path)
{
    return QString::fromUtf8(path);
}

struct SyncedFile {
    QString path;
    qint64 size; // at that moment
};

std::vector<SyncedFile> syncedFiles;

} // namespace

// In place of the C library's own, which it does the work of.
extern "C" int fsync(int descriptor)
{
    const QString path = QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
    syncedFiles.push_back({path, QFileInfo(path).size()});
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

TEST(FileSystem, PathsAreCutAtEitherSeparator)
{
    const struct {
        const char* path;
        const char* folder;
        const char* name;
    } rows[] = {
        {"/photos/a.jpg", "/photos/", "a.jpg"},
        {"C:\\photos\\a.jpg", "C:\\photos\\", "a.jpg"},
        {"C:\\photos/a.jpg", "C:\\photos/", "a.jpg"},
        {"a.jpg", "", "a.jpg"},
        {"/photos/", "/photos/", ""},
        {"", "", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ExtractFolder(Native(row.path)), Native(row.folder)) << row.path;
        EXPECT_EQ(ExtractLastName(Native(row.path)), Native(row.name)) << row.path;
    }
}

TEST(FileSystem, ANameIsCutAtItsFirstDot)
{
    const struct {
        const char* name;
        const char* stem;
        const char* rest;
    } rows[] = {
        {"index.html", "index", ".html"}, {"index.old.html", "index", ".old.html"},
        {".html", "", ".html"},           {"index.", "index", "."},
        {"index", "index", ""},           {"", "", ""},
    };
    for (const auto& row : rows) {
        const DottedName cut = CutAtFirstDot(QString::fromLatin1(row.name));
        EXPECT_EQ(cut.stem, QString::fromLatin1(row.stem)) << row.name;
        EXPECT_EQ(cut.rest, QString::fromLatin1(row.rest)) << row.name;
    }
    EXPECT_TRUE(CutAtFirstDot(QStringLiteral("index")).rest.isNull());
}

TEST(FileSystem, JoiningPutsExactlyOneSeparator)
{
    EXPECT_EQ(JoinPath(QStringLiteral("/a"), QStringLiteral("b")), QStringLiteral("/a/b"));
    EXPECT_EQ(JoinPath(QStringLiteral("/a/"), QStringLiteral("b")), QStringLiteral("/a/b"));
    EXPECT_EQ(JoinPath(QStringLiteral("a\\"), QStringLiteral("b")), QStringLiteral("a\\b"));
}

TEST(FileSystem, AFileHasAnAddressThatPagesCanHold)
{
    EXPECT_EQ(AddressOfFile(QStringLiteral("/a b/c-d_e.f/(g),h!.jpg")),
              QStringLiteral("/a b/c-d_e.f/(g),h!.jpg"));
    EXPECT_EQ(AddressOfFile(QString::fromUtf8("/\xc3\xa4.jpg")), QString::fromUtf8("/\xc3\xa4.jpg"));
    EXPECT_EQ(AddressOfFile(QStringLiteral("%#?&\"'<>\\\n")),
              QStringLiteral("%25%23%3F%26%22%27%3C%3E%5C%0A"));
    EXPECT_EQ(AddressOfFile(QString()), QString());
}

TEST(FileSystem, ListingsAreInNameOrderWithoutRegardToCaseThenExact)
{
    const CScratchFolder scratch;
    for (const char* name : {"b.txt", "A.txt", "a.txt", "C/x", ".hidden", "B.txt"}) {
        scratch.Write(Native(name), "x");
    }
    EXPECT_THAT(NamesIn(scratch.Path()),
                ElementsAre(QStringLiteral(".hidden"), QStringLiteral("A.txt"), QStringLiteral("a.txt"),
                            QStringLiteral("B.txt"), QStringLiteral("b.txt"), QStringLiteral("C")));
    EXPECT_TRUE(NamesIn(scratch.Path(QStringLiteral("missing"))).empty());
}

TEST(FileSystem, ALinkThatLeadsBackUpIsNotListed)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("a/b/x.txt"), "x");
    ASSERT_TRUE(QFile::link(scratch.Path(QStringLiteral("a")), scratch.Path(QStringLiteral("a/b/up"))));
    ASSERT_TRUE(QFile::link(scratch.Path(QStringLiteral("a/b")), scratch.Path(QStringLiteral("a/b/self"))));
    EXPECT_THAT(NamesIn(scratch.Path(QStringLiteral("a/b"))), ElementsAre(QStringLiteral("x.txt")));
}

TEST(FileSystem, AWholeChainOfDirectoriesIsMade)
{
    const CScratchFolder scratch;
    MakeDirectoryPath(scratch.Path(QStringLiteral("a/b/c")));
    EXPECT_TRUE(FolderExists(scratch.Path(QStringLiteral("a/b/c"))));
    MakeDirectoryPath(scratch.Path(QStringLiteral("a/b/c")));
    MakeDirectoryPath(scratch.Path(QStringLiteral("d/e/")));
    EXPECT_TRUE(FolderExists(scratch.Path(QStringLiteral("d/e"))));
}

TEST(FileSystem, AFileInTheWayOfADirectoryIsNamed)
{
    const CScratchFolder scratch;
    const QString file = scratch.Write(QStringLiteral("file"), "x");
    for (const QString& path : {file, JoinPath(file, QStringLiteral("below"))}) {
        try {
            MakeDirectoryPath(path);
            FAIL();
        } catch (const CWin32Exception& error) {
            EXPECT_EQ(error.GetCaption(), QStringLiteral("Could not create directory %1.").arg(file));
            EXPECT_EQ(error.GetErrorNumber(), EEXIST);
        }
    }
}

TEST(CopyDirectoryTree, CopiesATreeOverAnotherWithoutHiddenEntries)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("from/a.txt"), "new");
    scratch.Write(QStringLiteral("from/sub/b.txt"), "b");
    scratch.Write(QStringLiteral("from/.hidden"), "h");
    scratch.Write(QStringLiteral("from/.git/config"), "h");
    scratch.Write(QStringLiteral("to/x/a.txt"), "a longer old text");
    CopyDirectoryTree(scratch.Path(QStringLiteral("from")), scratch.Path(QStringLiteral("to/x")));
    EXPECT_EQ(scratch.Read(QStringLiteral("to/x/a.txt")), "new");
    EXPECT_EQ(scratch.Read(QStringLiteral("to/x/sub/b.txt")), "b");
    EXPECT_EQ(scratch.ListFiles().filter(QStringLiteral("to/")).size(), 2);
}

TEST(CopyDirectoryTree, AReadOnlyFileAtTheDestinationIsOverwritten)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("from/a.txt"), "new");
    const QString old = scratch.Write(QStringLiteral("to/a.txt"), "old");
    ASSERT_TRUE(QFile::setPermissions(old, QFileDevice::ReadOwner));
    CopyDirectoryTree(scratch.Path(QStringLiteral("from")), scratch.Path(QStringLiteral("to")));
    EXPECT_EQ(scratch.Read(QStringLiteral("to/a.txt")), "new");
    EXPECT_TRUE(QFileInfo(old).permission(QFileDevice::WriteOwner));
}

TEST(CopyDirectoryTree, AFileOfTheSameBytesIsLeftAloneAndNoOther)
{
    const CScratchFolder scratch;
    const QByteArray longer = QByteArray(50'000, 'a') + "end";
    const struct {
        QByteArray source;
        QByteArray there;
        bool isLeftAlone;
    } rows[] = {
        {"same", "same", true}, {"same", "SAME", false}, {"same", "same ", false},
        {"", "", true},         {longer, longer, true},  {longer, QByteArray(50'000, 'a') + "End", false},
    };
    const QString copy = scratch.Path(QStringLiteral("to/a.css"));
    const QDateTime past(QDate(2020, 1, 1), QTime(12, 0));
    for (const auto& row : rows) {
        scratch.Write(QStringLiteral("from/a.css"), row.source);
        scratch.Write(QStringLiteral("to/a.css"), row.there);
        QFile file(copy);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(past, QFileDevice::FileModificationTime));
        file.close();
        CopyDirectoryTree(scratch.Path(QStringLiteral("from")), scratch.Path(QStringLiteral("to")));
        EXPECT_EQ(scratch.Read(QStringLiteral("to/a.css")), row.source);
        EXPECT_EQ(QFileInfo(copy).lastModified() == past, row.isLeftAlone)
            << row.source.right(9).constData() << " over " << row.there.right(9).constData();
    }
}

TEST(FileSystem, AFileIsOfTheseBytesOrNot)
{
    const CScratchFolder scratch;
    const QString path = scratch.Write(QStringLiteral("a"), "bytes");
    const QString link = scratch.Path(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(path, link));
    const QString pipe = scratch.Path(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_TRUE(IsFileOf(path, "bytes"));
    EXPECT_TRUE(IsFileOf(scratch.Write(QStringLiteral("empty"), ""), ""));
    for (const char* const other : {"", "Bytes", "byte", "bytes "}) {
        EXPECT_FALSE(IsFileOf(path, other)) << other;
    }
    EXPECT_FALSE(IsFileOf(scratch.Path(QStringLiteral("gone")), ""));
    EXPECT_FALSE(IsFileOf(link, "bytes"));
    EXPECT_FALSE(IsFileOf(pipe, ""));
    EXPECT_FALSE(IsFileOf(scratch.Path(), ""));
}

TEST(CopyDirectoryTree, AFileThatCannotBeCopiedIsNamed)
{
    const CScratchFolder scratch;
    const QString source = scratch.Write(QStringLiteral("from/a.txt"), "new");
    MakeDirectoryPath(scratch.Path(QStringLiteral("to/a.txt")));
    try {
        CopyDirectoryTree(scratch.Path(QStringLiteral("from")), scratch.Path(QStringLiteral("to")));
        FAIL();
    } catch (const CWin32Exception& error) {
        EXPECT_EQ(error.GetCaption(), QStringLiteral("Could not copy file %1 to %2.")
                                          .arg(source, scratch.Path(QStringLiteral("to/a.txt"))));
    }
}

TEST(CopyDirectoryTree, ADestinationInsideTheSourceIsNotCopiedIntoItself)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("style/a.css"), "a");
    CopyDirectoryTree(scratch.Path(QStringLiteral("style")), scratch.Path(QStringLiteral("style/out/style")));
    EXPECT_THAT(scratch.ListFiles(),
                ElementsAre(QStringLiteral("style/a.css"), QStringLiteral("style/out/style/a.css")));
}

TEST(WriteFileAtomically, ReplacesAFileAndKeepsItsMode)
{
    const CScratchFolder scratch;
    const QString path = scratch.Write(QStringLiteral("p.gallery"), "old");
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0600), 0);
    WriteFileAtomically(path, "new");
    EXPECT_EQ(scratch.Read(QStringLiteral("p.gallery")), "new");
    struct stat status;
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    EXPECT_EQ(scratch.ListFiles().size(), 1);
}

TEST(WriteFileAtomically, ANameOf255BytesIsWritten)
{
    const CScratchFolder scratch;
    const QString name(255, QLatin1Char('n'));
    WriteFileAtomically(scratch.Path(name), "x");
    EXPECT_EQ(scratch.Read(name), "x");
}

TEST(WriteFileAtomically, AFailureNamesThePathAndLeavesNothingBehind)
{
    const CScratchFolder scratch;
    MakeDirectoryPath(scratch.Path(QStringLiteral("taken")));
    for (const char* name : {"missing/p.gallery", "taken"}) {
        try {
            WriteFileAtomically(scratch.Path(Native(name)), "x");
            FAIL() << name;
        } catch (const CWin32Exception& error) {
            EXPECT_EQ(error.GetCaption(),
                      QStringLiteral("Could not write file %1.").arg(scratch.Path(Native(name))));
        }
    }
    EXPECT_TRUE(scratch.ListFiles().isEmpty());
}

// Renamed before that, a loss of power could leave a file without content under the old one's name.
TEST(WriteFileAtomically, AllBytesAreOnTheDiskBeforeTheOldFileGoes)
{
    const CScratchFolder scratch;
    const QString path = scratch.Write(QStringLiteral("p.gallery"), "old");
    syncedFiles.clear();
    ASSERT_EQ(ReplaceFile(path, "newer", Durability::Plain), 0);
    EXPECT_TRUE(syncedFiles.empty());
    WriteFileAtomically(path, QByteArray(100'000, 'n'));
    ASSERT_EQ(syncedFiles.size(), 1u);
    EXPECT_TRUE(syncedFiles[0].path.startsWith(scratch.Path(QStringLiteral(".vistorama-"))))
        << qPrintable(syncedFiles[0].path);
    EXPECT_EQ(syncedFiles[0].size, 100'000);
}

TEST(WriteFileAtomically, AFileThatItsOwnerProtectedStays)
{
    const CScratchFolder scratch;
    const QString path = scratch.Write(QStringLiteral("p.gallery"), "old");
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0444), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(scratch.Path()).constData(), 0777), 0);
    const auto replaceAsAnyUser = [&] {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 && ::setuid(nobody) != 0) {
            ::_exit(0);
        }
        ::_exit(ReplaceFile(path, "new", Durability::Plain));
    };
    EXPECT_EXIT(replaceAsAnyUser(), testing::ExitedWithCode(EACCES), "");
    EXPECT_EQ(scratch.Read(QStringLiteral("p.gallery")), "old");
}

TEST(ReadWholeFile, AMissingFileAndAFolderAreErrorsThatNameThem)
{
    const CScratchFolder scratch;
    EXPECT_EQ(ReadWholeFile(scratch.Write(QStringLiteral("a"), QByteArray(200000, 'x'))).size(), 200000);
    for (const char* name : {"missing", ""}) {
        try {
            ReadWholeFile(scratch.Path(Native(name)));
            FAIL() << name;
        } catch (const CWin32Exception& error) {
            EXPECT_TRUE(error.GetCaption().contains(scratch.Path(Native(name))));
        }
    }
}

TEST(FileSystem, ADirectoryOfTheOwnerAloneIsOneWhateverTheMask)
{
    const CScratchFolder scratch;
    const mode_t usual = ::umask(0);
    MakeDirectoryPath(scratch.Path(QStringLiteral("private/below")), DirectoryAccess::OwnerOnly);
    MakeDirectoryPath(scratch.Path(QStringLiteral("open/below")));
    ::umask(usual);
    const struct {
        const char* name;
        mode_t mode;
    } rows[] = {{"private", 0700}, {"private/below", 0700}, {"open", 0777}, {"open/below", 0777}};
    for (const auto& row : rows) {
        struct stat status;
        const QString path = scratch.Path(QString::fromLatin1(row.name));
        ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, row.mode) << row.name;
    }
}

TEST(FileSystem, AbandonedTemporariesAreOldAndOfProgramsThatHaveEnded)
{
    const CScratchFolder scratch;
    const QString ofThisProgram = QStringLiteral(".vistorama-%1-7.tmp").arg(::getpid());
    const struct {
        QString name;
        int age; // seconds
        bool isRemoved;
    } rows[] = {
        {QStringLiteral(".vistorama-999999999-1.tmp"), 7200, true},
        {QStringLiteral(".vistorama-999999999-2.tmp"), 60, false},
        {ofThisProgram, 7200, false},
        {QStringLiteral(".vistorama-x-1.tmp"), 7200, false},
        {QStringLiteral("a.vistorama-999999999-1.tmp"), 7200, false},
        {QStringLiteral(".vistorama-999999999-1.tmp.jpg"), 7200, false},
    };
    for (const auto& row : rows) {
        QFile file(scratch.Write(row.name, "half"));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-row.age),
                                     QFileDevice::FileModificationTime));
    }
    RemoveAbandonedTemporaries(scratch.Path());
    RemoveAbandonedTemporaries(scratch.Path(QStringLiteral("missing")));
    for (const auto& row : rows) {
        EXPECT_EQ(FileExists(scratch.Path(row.name)), !row.isRemoved) << qPrintable(row.name);
    }
}

TEST(CopyDirectoryTree, ALinkToTheSourceAtTheDestinationCostsNothing)
{
    const CScratchFolder scratch;
    const QString source = scratch.Write(QStringLiteral("from/a.css"), "body {}");
    MakeDirectoryPath(scratch.Path(QStringLiteral("to")));
    ASSERT_TRUE(QFile::link(source, scratch.Path(QStringLiteral("to/a.css"))));
    CopyDirectoryTree(scratch.Path(QStringLiteral("from")), scratch.Path(QStringLiteral("to")));
    EXPECT_EQ(scratch.Read(QStringLiteral("from/a.css")), "body {}");
    EXPECT_EQ(scratch.Read(QStringLiteral("to/a.css")), "body {}");
}

TEST(CopyDirectoryTree, ALongFileIsComparedAndCopiedToItsEnd)
{
    const CScratchFolder scratch;
    QByteArray film(3 * 1024 * 1024 + 17, 'f');
    scratch.Write(QStringLiteral("from/film.mp4"), film);
    const auto copy = [&] {
        CopyDirectoryTree(scratch.Path(QStringLiteral("from")), scratch.Path(QStringLiteral("to")));
        return scratch.Read(QStringLiteral("to/film.mp4"));
    };
    EXPECT_EQ(copy(), film);
    film[film.size() - 1] = 'g'; // the size stays
    scratch.Write(QStringLiteral("from/film.mp4"), film);
    EXPECT_EQ(copy(), film);
    struct stat before {};
    struct stat after {};
    const QByteArray name = QFile::encodeName(scratch.Path(QStringLiteral("to/film.mp4")));
    ASSERT_EQ(::stat(name.constData(), &before), 0);
    EXPECT_EQ(copy(), film);
    ASSERT_EQ(::stat(name.constData(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino); // it wasn't written again
}

TEST(CopyDirectoryTree, AFullDiskLeavesTheOldFileWhole)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("from/a.css"), QByteArray(5000, 'n'));
    scratch.Write(QStringLiteral("to/a.css"), "old");
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &usual), 0);
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{100, usual.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    bool failed = false;
    try {
        CopyDirectoryTree(scratch.Path(QStringLiteral("from")), scratch.Path(QStringLiteral("to")));
    } catch (const CWin32Exception&) {
        failed = true;
    }
    ::setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, formerHandler);
    EXPECT_TRUE(failed);
    EXPECT_EQ(scratch.Read(QStringLiteral("to/a.css")), "old");
    EXPECT_THAT(scratch.ListFiles(), ElementsAre(QStringLiteral("from/a.css"), QStringLiteral("to/a.css")));
}

TEST(CopyDirectoryTree, AReadOnlyFileThatStaysSoIsNamed)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "Only an administrator can have a file here that is somebody else's.";
    }
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("from/a.txt"), "new");
    const QString old = scratch.Write(QStringLiteral("to/a.txt"), "old");
    ASSERT_EQ(::chmod(QFile::encodeName(old).constData(), 0444), 0);
    const COrdinaryRights rights(scratch);
    try {
        CopyDirectoryTree(scratch.Path(QStringLiteral("from")), scratch.Path(QStringLiteral("to")));
        FAIL();
    } catch (const CWin32Exception& error) {
        EXPECT_EQ(error.GetCaption(),
                  QStringLiteral("Could not clear readonly attribute for file %1.").arg(old));
        EXPECT_EQ(error.GetErrorNumber(), EPERM);
    }
    EXPECT_EQ(scratch.Read(QStringLiteral("to/a.txt")), "old");
}
