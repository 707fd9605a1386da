#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace {

const QDir& Source()
{
    static const QDir folder(QStringLiteral(SOURCE_FOLDER));
    return folder;
}

// As they are in the repository; what is built or fetched is none of them.
QStringList Documents()
{
    QStringList names = Source().entryList({QStringLiteral("*.md")}, QDir::Files);
    for (const char* folder : {"docs", "packaging", "packaging/sample", "fuzz", "bench"}) {
        const QString name = QString::fromLatin1(folder);
        for (const QString& file : QDir(Source().filePath(name)).entryList({QStringLiteral("*.md")})) {
            names += name + '/' + file;
        }
    }
    return names;
}

QString ReadText(const QString& name)
{
    QFile file(Source().filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(name);
    return QString::fromUtf8(file.readAll());
}

// Code shows links and paths of others.
QString WithoutCode(QString text)
{
    text.remove(QRegularExpression(QStringLiteral("^ *```.*?^ *```$"),
                                   QRegularExpression::MultilineOption |
                                       QRegularExpression::DotMatchesEverythingOption));
    return text.remove(QRegularExpression(QStringLiteral("`[^`\n]*`")));
}

// The targets of "[text](target)" and "![text](target)".
QStringList LinksOf(const QString& name)
{
    static const QRegularExpression link(QStringLiteral("\\]\\(([^)\\s]+)\\)"));
    QStringList targets;
    auto matches = link.globalMatch(WithoutCode(ReadText(name)));
    while (matches.hasNext()) {
        targets += matches.next().captured(1);
    }
    return targets;
}

// "How it is made, in short" is found under "how-it-is-made-in-short".
QSet<QString> AnchorsOf(const QString& name)
{
    static const QRegularExpression heading(QStringLiteral("^#+ (.+)$"), QRegularExpression::MultilineOption);
    static const QRegularExpression code(QStringLiteral("^ *```.*?^ *```$"),
                                         QRegularExpression::MultilineOption |
                                             QRegularExpression::DotMatchesEverythingOption);
    QSet<QString> anchors;
    auto matches = heading.globalMatch(ReadText(name).remove(code));
    while (matches.hasNext()) {
        QString anchor = matches.next().captured(1).toLower();
        anchor.remove(QRegularExpression(QStringLiteral("[^\\w -]"))).replace(' ', '-');
        anchors.insert(anchor);
    }
    return anchors;
}

bool IsElsewhere(const QString& target)
{
    return QRegularExpression(QStringLiteral("^[a-z]+:")).match(target).hasMatch();
}

// The paths of the source tree that a document names in code, like `src/effects/Effect.cpp`.
QStringList PathsIn(const QString& name)
{
    static const QRegularExpression path(
        QStringLiteral("`((?:src|tests|docs|data|packaging|cmake|bench|fuzz|\\.ci)/[\\w./-]+)`"));
    QStringList paths;
    auto matches = path.globalMatch(ReadText(name));
    while (matches.hasNext()) {
        paths += matches.next().captured(1);
    }
    return paths;
}

} // namespace

TEST(Documents, AreAllThere)
{
    for (const char* name : {"README.md", "CONTRIBUTING.md", "CHANGELOG.md", "docs/architecture.md",
                             "docs/formats.md", "docs/guide.md", "docs/layouts.md"}) {
        EXPECT_TRUE(Documents().contains(QLatin1String(name))) << name;
    }
}

TEST(Documents, EveryLinkLeadsSomewhere)
{
    int links = 0;
    for (const QString& name : Documents()) {
        for (const QString& target : LinksOf(name)) {
            if (IsElsewhere(target)) {
                continue;
            }
            ++links;
            const QString file = target.section('#', 0, 0);
            const QString anchor = target.section('#', 1);
            const QString path = file.isEmpty() ? name : QDir::cleanPath(QFileInfo(name).path() + '/' + file);
            EXPECT_TRUE(QFileInfo::exists(Source().filePath(path)))
                << qPrintable(name + QStringLiteral(": ") + target);
            if (!anchor.isEmpty()) {
                EXPECT_TRUE(AnchorsOf(path).contains(anchor))
                    << qPrintable(name + QStringLiteral(": ") + target);
            }
        }
    }
    EXPECT_GT(links, 20);
}

TEST(Documents, EveryPathThatTheyNameIsThere)
{
    int paths = 0;
    for (const QString& name : Documents()) {
        for (const QString& path : PathsIn(name)) {
            ++paths;
            EXPECT_TRUE(QFileInfo::exists(Source().filePath(path)))
                << qPrintable(name + QStringLiteral(": ") + path);
        }
    }
    EXPECT_GT(paths, 20);
}

TEST(Documents, ShowEveryPictureAndStaySmall)
{
    QSet<QString> shown;
    for (const QString& name : Documents()) {
        for (const QString& target : LinksOf(name)) {
            shown.insert(QDir::cleanPath(QFileInfo(name).path() + '/' + target));
        }
    }
    qint64 bytes = 0;
    const QDir images(Source().filePath(QStringLiteral("docs/images")));
    for (const QFileInfo& picture : images.entryInfoList(QDir::Files)) {
        EXPECT_TRUE(shown.contains(QStringLiteral("docs/images/") + picture.fileName()))
            << qPrintable(picture.fileName());
        bytes += picture.size();
    }
    EXPECT_LT(bytes, 1'750'000);
}

TEST(Documents, EveryPictureSaysWhatItShows)
{
    static const QRegularExpression unnamed(QStringLiteral("!\\[\\s*\\]\\("));
    for (const QString& name : Documents()) {
        EXPECT_FALSE(ReadText(name).contains(unnamed)) << qPrintable(name);
    }
}

TEST(Documents, EveryKeywordOfTheTemplateLanguageIsExplained)
{
    static const QRegularExpression row(QStringLiteral("^    \\{\"([a-z_]+)\", Make<"),
                                        QRegularExpression::MultilineOption);
    static const QRegularExpression heading(QStringLiteral("^#### .*$"), QRegularExpression::MultilineOption);
    QString headings;
    auto lines = heading.globalMatch(ReadText(QStringLiteral("docs/layouts.md")));
    while (lines.hasNext()) {
        headings += lines.next().captured() + '\n';
    }
    int keywords = 0;
    auto rows = row.globalMatch(ReadText(QStringLiteral("src/template/TemplateLanguage.cpp")));
    while (rows.hasNext()) {
        const QString keyword = rows.next().captured(1);
        ++keywords;
        EXPECT_TRUE(headings.contains('`' + keyword + '`')) << qPrintable(keyword);
    }
    EXPECT_GT(keywords, 15);
}
