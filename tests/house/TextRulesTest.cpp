#include <set>

#include <QRegularExpression>

#include "SourceLiterals.h"
#include "SourceTree.h"
#include "resources/StringTable.h"
#include "support/ScratchFolder.h"

// Texts for people stand in the string table and nowhere else, so that a translation reaches all of them.

namespace {

const QString Root = QStringLiteral(SOURCE_FOLDER "/src/");
const QString Table = QStringLiteral("resources/");

struct Exception {
    const char* file; // what its path begins with
    const char* text; // a pattern of the whole literal
    const char* why;
};

constexpr Exception Exceptions[] = {
    {"effects/", R"((picture|frame|resize|rotate|text|card)( %\d)+ ?)", "keys of effects, compared only"},
    {"imaging/PictureDate.cpp", "yyyy:MM:dd HH:mm:ss", "the date format of EXIF"},
    {"shell/look/Icons.cpp", R"(line-icon( %\d)+)", "a key of the cache of pictures"},
    {"effects/StampParams.h", "MS Sans Serif", "the font of the project file"},
    {"cli/Answers.cpp", R"((\\n)?(caption|description|advice): )", "words that scripts look for"},
    {"cli/CommandLine.cpp", R"(vistorama-cli %1\\n)", "the name of the program"},
    {"shell/frame/CommandLine.cpp", R"(vistorama %1\\n)", "the name of the program"},
    {"cli/InfoCommand.cpp", "json", "the name of an option"},
    {"ftpengine/commands/FTPCommandSequences.cpp", "AUTH TLS", "a command of the protocol"},
    {"ftpengine/messages/ServerWords.cpp", "clear text", "words that servers use"},
    {"ftpengine/sftp/SftpRefusal.cpp", "(no|not enough) space|disk( is)? full", "words that servers use"},
    {"content/ContentGeneratorBase.cpp", R"(\\n<script .*function GetCurrentURL.*)", "a script"},
    {"content/ContentGeneratorFolder.cpp", R"( new String\( document.location \))", "a script"},
    {"content/PictureMenuCommandGenerator.cpp", R"(\.innerHTML, window\..*)", "a script"},
    {"shell/panes/pages/ShownPage.cpp", "<style>.*</style>.*", "a style sheet"},
};

// Relative to src/.
QStringList FindSources()
{
    return FilesBelow(Root, {QStringLiteral("*.h"), QStringLiteral("*.cpp")});
}

std::vector<SourceLiteral> ReadTextsOutside()
{
    std::vector<SourceLiteral> found;
    for (const QString& file : FindSources()) {
        if (file.startsWith(Table)) {
            continue;
        }
        for (const SourceLiteral& literal : FindLiterals(file, ReadText(Root + file))) {
            if (IsForPeople(literal)) {
                found.push_back(literal);
            }
        }
    }
    return found;
}

const std::vector<SourceLiteral>& TextsOutside()
{
    static const std::vector<SourceLiteral> texts = ReadTextsOutside();
    return texts;
}

bool IsMeant(const Exception& exception, const SourceLiteral& literal)
{
    const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(QString::fromLatin1(exception.text)));
    return literal.file.startsWith(QLatin1String(exception.file)) && pattern.match(literal.text).hasMatch();
}

// Whether a line of source, the literal in it first, would be found.
bool IsFound(const char* line)
{
    const auto literals = FindLiterals(QStringLiteral("a/One.cpp"), QString::fromUtf8(line));
    EXPECT_FALSE(literals.empty()) << line;
    return !literals.empty() && IsForPeople(literals.back());
}

} // namespace

TEST(TextRules, TextsForPeopleStandInTheStringTable)
{
    for (const SourceLiteral& literal : TextsOutside()) {
        const bool isMeant =
            std::any_of(std::begin(Exceptions), std::end(Exceptions),
                        [&](const Exception& exception) { return IsMeant(exception, literal); });
        EXPECT_TRUE(isMeant) << "src/" << qPrintable(literal.file) << ':' << literal.line << ": \""
                             << qPrintable(literal.text) << '"';
    }
}

TEST(TextRules, EveryExceptionIsNeeded)
{
    const auto& found = TextsOutside();
    for (const Exception& exception : Exceptions) {
        EXPECT_TRUE(std::any_of(found.begin(), found.end(),
                                [&](const SourceLiteral& literal) { return IsMeant(exception, literal); }))
            << exception.file << ": " << exception.text << " (" << exception.why << ')';
    }
}

TEST(TextRules, EveryTextIsUsed)
{
    static const QRegularExpression use(QStringLiteral("\\bStringId::(\\w+)"));
    std::set<QString> used;
    for (const QString& file : FindSources()) {
        auto uses = use.globalMatch(ReadText(Root + file));
        while (uses.hasNext()) {
            used.insert(uses.next().captured(1));
        }
    }
    for (const TextRow& row : GetTextRows()) {
        EXPECT_TRUE(used.contains(QString::fromLatin1(row.name))) << row.name;
    }
}

TEST(TextRules, TheWordsOfBuiltInPagesAreInTheStringTable)
{
    static const QRegularExpression notShown(
        QStringLiteral("<style>.*?</style>|<script.*?</script>|%[a-z_]+%"),
        QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression words(QStringLiteral(">([^<>]*[A-Za-z]{2}[^<>]*)<"));
    int count = 0;
    for (const QString& file : FilesBelow(Root + Table, {QStringLiteral("*.html")})) {
        auto matches = words.globalMatch(
            ReadText(Root + Table + file).remove(notShown).remove(QStringLiteral("&nbsp;")));
        while (matches.hasNext()) {
            const QString found = matches.next().captured(1).trimmed();
            const auto rows = GetTextRows();
            EXPECT_TRUE(std::any_of(rows.begin(), rows.end(), [&](const TextRow& row) {
                return QString::fromUtf8(row.words) == found;
            })) << qPrintable(file + QStringLiteral(": ") + found);
            ++count;
        }
    }
    EXPECT_EQ(count, 6);
}

TEST(TextRules, ATextForPeopleIsTold)
{
    for (const char* line : {
             R"(const QString a = QStringLiteral("The file is gone.");)",
             R"(a = QStringLiteral("%1 of %2 ").arg(1).arg(2) + QStringLiteral("%1 pages");)",
             R"(a = "in its %s, something";)",
             R"(a = "<b>Two words</b>";)",
             R"(a = "\" alt=\"\">Two words";)",
             R"(a = R"(Two words)"
             ")"
             R"(";)",
             R"(a = QStringLiteral("Fo&lder:");)",
             R"(a = QStringLiteral("Delete...");)",
             R"(a = QStringLiteral("warning: ");)",
             R"(auto* group = new QGroupBox(QStringLiteral("Position"));)",
             R"(margin->setSuffix(QStringLiteral(" px"));)",
             R"(MakeButton(Text(StringId::OkButton), "ok", QStringLiteral("Cancel"));)",
             R"(PrintOut(QStringLiteral("success"));)",
             R"(throw CWrongUse(QStringLiteral("missing"));)",
         }) {
        EXPECT_TRUE(IsFound(line)) << line;
    }
}

TEST(TextRules, WhatIsNoTextForPeopleIsToldFromIt)
{
    for (const char* line : {
             R"(a = QStringLiteral("gallery");)",
             R"(a = "PagesView";)",
             R"(a = "Corvane/Vistorama";)",
             R"(a = "</td><td width=\"1\" height=";)",
             R"(a = "\" src=\"";)",
             R"(a = "&nbsp;";)",
             R"(Trace(QStringLiteral("Opening a gallery"));)",
             R"(ThrowTraced("Send, WSASend throws: ", error);)",
             R"(const CTraceScope scope("Two words");)",
             R"(MakeButton(Text(StringId::OkButton), "ok", this);)",
             R"(throw CUnexpectedException("ImageEffect", __LINE__);)",
             R"(a = "word"; // "Two words")",
             R"(a = "word"; b = '"'; c = "b";)",
         }) {
        EXPECT_FALSE(IsFound(line)) << line;
    }
}
