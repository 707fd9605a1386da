#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

// What include paths cannot refuse: ways around them, and libraries that belong to one folder.

namespace {

struct IncludeLine {
    QString folder; // of src/
    QString file;
    QString included; // with its quotes or brackets
};

std::vector<IncludeLine> ReadIncludeLines()
{
    static const QRegularExpression pattern(QStringLiteral(R"(^\s*#\s*include\s*([<"][^>"]+[>"]))"),
                                            QRegularExpression::MultilineOption);
    const QString root = QStringLiteral(SOURCE_FOLDER "/src/");
    std::vector<IncludeLine> lines;
    QDirIterator files(root, {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QString relative = file.fileName().mid(root.size());
        auto matches = pattern.globalMatch(QString::fromUtf8(file.readAll()));
        while (matches.hasNext()) {
            lines.push_back({relative.section(QLatin1Char('/'), 0, 0), relative, matches.next().captured(1)});
        }
    }
    return lines;
}

} // namespace

TEST(IncludeRules, NoIncludeClimbsOutOfItsFolder)
{
    const auto lines = ReadIncludeLines();
    ASSERT_GT(lines.size(), 50u);
    for (const IncludeLine& line : lines) {
        EXPECT_FALSE(line.included.contains(QStringLiteral("../"))) << qPrintable(line.file);
    }
}

TEST(IncludeRules, ALibraryIsIncludedOnlyByItsOwnFolder)
{
    const struct {
        const char* pattern;
        const char* folder;
    } rules[] = {
        {"^<pugixml", "common"},
        {"^<(vips/|jpeglib|jerror|cairo|pango/)", "imaging"},
        {"^<(QtWidgets|QtGui|QtWebEngine|QtWebChannel|QWidget|QApplication|QMainWindow|QDialog|QWizard|QWeb)",
         "shell"},
        {"^<sodium", "ftpengine"},
        {"^<sys/socket|^<netdb|^<poll", "ftpengine"},
    };
    const auto lines = ReadIncludeLines();
    for (const auto& rule : rules) {
        const QRegularExpression pattern(QString::fromLatin1(rule.pattern));
        for (const IncludeLine& line : lines) {
            if (pattern.match(line.included).hasMatch()) {
                EXPECT_EQ(line.folder, QLatin1String(rule.folder))
                    << qPrintable(line.file + QStringLiteral(" includes ") + line.included);
            }
        }
    }
}

TEST(IncludeRules, EverySourceIncludesItsOwnHeaderFirst)
{
    const auto lines = ReadIncludeLines();
    QString previous;
    for (const IncludeLine& line : lines) {
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
