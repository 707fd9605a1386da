#include <QFile>
#include <QRegularExpression>

#include "SourceTree.h"

// The walls of the house: the lists of the folders against every include line, and what include paths can't
// refuse.

namespace {

const SourceTree& Tree()
{
    static const SourceTree tree = ReadSourceTree();
    return tree;
}

// The folders whose headers a compiler opens for the sources of a folder, those of other headers included.
std::set<QString> ReachedFolders(const QString& folder)
{
    std::map<QString, QStringList> included;
    QStringList waiting;
    for (const IncludeLine& line : Tree().lines) {
        included[line.file] += QuotedPath(line);
        if (line.folder == folder) {
            waiting += QuotedPath(line);
        }
    }
    std::set<QString> seen;
    std::set<QString> folders;
    while (!waiting.isEmpty()) {
        const QString path = waiting.takeLast();
        if (!path.isEmpty() && seen.insert(path).second) {
            folders.insert(Tree().FolderOf(path));
            waiting += included[path];
        }
    }
    folders.erase(folder);
    folders.erase(QString()); // generated files, such as "Name.moc"
    return folders;
}

QString Joined(const std::set<QString>& folders)
{
    return QStringList(folders.begin(), folders.end()).join(QLatin1Char(' '));
}

} // namespace

TEST(IncludeRules, NoIncludeClimbsOutOfItsFolder)
{
    ASSERT_GT(Tree().lines.size(), 1000u);
    for (const IncludeLine& line : Tree().lines) {
        EXPECT_FALSE(line.folder.isEmpty()) << qPrintable(line.file) << " belongs to no folder";
        EXPECT_FALSE(line.included.contains(QStringLiteral("../"))) << qPrintable(line.file);
    }
}

TEST(IncludeRules, AFolderIncludesOnlyWhatItsListNames)
{
    for (const IncludeLine& line : Tree().lines) {
        const QString target = Tree().FolderOf(QuotedPath(line));
        if (!target.isEmpty() && target != line.folder) {
            EXPECT_TRUE(Tree().mayInclude.at(line.folder).contains(target))
                << qPrintable(line.file + QStringLiteral(" includes ") + line.included);
        }
    }
}

TEST(IncludeRules, AListNamesWhatIsNeededAndNothingElse)
{
    for (const QString& folder : Tree().floors) {
        EXPECT_EQ(Joined(Tree().mayInclude.at(folder)), Joined(ReachedFolders(folder))) << qPrintable(folder);
    }
}

TEST(IncludeRules, AListNamesLowerFloorsOnly)
{
    ASSERT_GT(Tree().floors.size(), 15u);
    std::set<QString> lower;
    for (const QString& folder : Tree().floors) {
        for (const QString& entry : Tree().mayInclude.at(folder)) {
            EXPECT_TRUE(lower.contains(entry)) << qPrintable(folder + QStringLiteral(" lists ") + entry);
        }
        lower.insert(folder);
    }
}

TEST(IncludeRules, NoFilesIncludeEachOtherInACircle)
{
    for (const std::vector<QString>& circle : FindCircles(Tree().lines)) {
        ADD_FAILURE() << qPrintable(QStringList(circle.begin(), circle.end()).join(QStringLiteral(", ")));
    }
}

TEST(IncludeRules, ACircleIsFoundThroughSourcesAndHeaders)
{
    const auto line = [](const char* file, const char* included) {
        return IncludeLine{QString::fromLatin1(file), QString(), QString::fromLatin1(included)};
    };
    const auto circles = FindCircles({line("a/One.cpp", "\"a/One.h\""), line("a/One.cpp", "\"a/Two.h\""),
                                      line("a/Two.h", "\"a/Three.h\""), line("a/Three.cpp", "\"a/One.h\""),
                                      line("a/Four.cpp", "\"a/One.h\""), line("a/Four.h", "<map>")});
    ASSERT_EQ(circles.size(), 1u);
    EXPECT_EQ(circles[0], (std::vector<QString>{QStringLiteral("a/One"), QStringLiteral("a/Three"),
                                                QStringLiteral("a/Two")}));
}

TEST(IncludeRules, ALibraryIsIncludedOnlyByItsOwnFolder)
{
    const struct {
        const char* pattern;
        const char* folder; // and those below it
    } rules[] = {
        {"^<pugixml", "common"},
        {"^<(vips/|jpeglib|jerror|cairo|pango/)", "imaging"},
        {"^<(QtWidgets|QtGui|QtWebEngine|QtWebChannel|QWidget|QApplication|QMainWindow|QDialog|QWizard|QWeb)",
         "shell"},
        {"^<(sodium|openssl/|libsecret/|libssh/)", "ftpengine"},
        {"^<xxhash", "deploy"},
        {"^<sys/socket|^<netdb|^<poll", "ftpengine"},
    };
    for (const auto& rule : rules) {
        const QRegularExpression pattern(QString::fromLatin1(rule.pattern));
        for (const IncludeLine& line : Tree().lines) {
            if (pattern.match(line.included).hasMatch()) {
                EXPECT_EQ(line.file.section(QLatin1Char('/'), 0, 0), QLatin1String(rule.folder))
                    << qPrintable(line.file + QStringLiteral(" includes ") + line.included);
            }
        }
    }
}

TEST(IncludeRules, EverySourceIncludesItsOwnHeaderFirst)
{
    QString previous;
    for (const IncludeLine& line : Tree().lines) {
        if (line.file == previous || !line.file.endsWith(QStringLiteral(".cpp"))) {
            continue;
        }
        previous = line.file;
        QString own = line.file;
        own.replace(QRegularExpression(QStringLiteral("cpp$")), QStringLiteral("h"));
        if (QFile::exists(QStringLiteral(SOURCE_FOLDER "/src/") + own)) {
            EXPECT_EQ(line.included, QStringLiteral("\"%1\"").arg(own)) << qPrintable(line.file);
        }
    }
}
