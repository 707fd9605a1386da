#include <QRegularExpression>
#include <gtest/gtest.h>

#include "Tool.h"
#include "support/ScratchFolder.h"

namespace {

// A shell in a folder with a project, a picture, a layout, a page and a subfolder, whose user has two stored
// destinations.
class CompletionTest : public testing::Test {
protected:
    CompletionTest()
    {
        for (const char* name : {"work/trip.gallery", "work/two words.gallery", "work/beach.JPG",
                                 "work/own.xml", "work/page.html", "work/site/index.html"}) {
            scratch.Write(QString::fromLatin1(name), "");
        }
        const QString program = Installed(QStringLiteral("bin/vistorama-cli"));
        for (const char* name : {"home", "my club"}) {
            EXPECT_EQ(RunTool(program,
                              {QStringLiteral("destination"), QStringLiteral("add"), QLatin1String(name),
                               QStringLiteral("ftp://localhost/www")},
                              GetEnvironment())
                          .exitCode,
                      0);
        }
    }

    // With the installed program first on the path.
    QMap<QString, QString> GetEnvironment() const
    {
        return {{QStringLiteral("VISTORAMA_DATA"), QString()},
                {QStringLiteral("HOME"), scratch.Path(QStringLiteral("home"))},
                {QStringLiteral("XDG_CONFIG_HOME"), QString()},
                {QStringLiteral("XDG_DATA_HOME"), QString()},
                {QStringLiteral("XDG_CACHE_HOME"), QString()},
                {QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8")},
                {QStringLiteral("PATH"),
                 Installed(QStringLiteral("bin:")) + QString::fromLocal8Bit(qgetenv("PATH"))}};
    }

    // What a shell offers for the line, sorted. The script gets the line as $argv[1] or $1, in the work
    // folder.
    QStringList Offers(const QString& shell, const QString& script, const QString& line) const
    {
        QStringList arguments{
            QStringLiteral("-c"),
            QStringLiteral("cd '%1'\n%2").arg(scratch.Path(QStringLiteral("work")), script)};
        if (shell != QStringLiteral("fish")) {
            arguments += shell;
        }
        const ToolResult result = RunTool(shell, arguments + QStringList{line}, GetEnvironment());
        EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
        EXPECT_EQ(result.errors, QString());
        QStringList offers = result.output.split('\n', Qt::SkipEmptyParts);
        offers.sort();
        return offers;
    }

    // As readline asks: the words of the line, of which the last one is in work.
    QStringList BashOffers(const QString& line) const
    {
        return Offers(QStringLiteral("bash"),
                      QStringLiteral("source '%1'\n"
                                     "complete -p vistorama-cli >/dev/null || exit 1\n"
                                     "eval \"COMP_WORDS=($1)\"\n"
                                     "if [[ $1 == *' ' ]]; then COMP_WORDS+=(''); fi\n"
                                     "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                                     "_vistorama_cli\n"
                                     "printf '%s\\n' \"${COMPREPLY[@]}\"\n")
                          .arg(Installed(QStringLiteral("share/bash-completion/completions/vistorama-cli"))),
                      line);
    }

    // Without the descriptions.
    QStringList FishOffers(const QString& line) const
    {
        QStringList offers =
            Offers(QStringLiteral("fish"),
                   QStringLiteral("source '%1'\n"
                                  "complete -C \"$argv[1]\"\n")
                       .arg(Installed(QStringLiteral("share/fish/vendor_completions.d/vistorama-cli.fish"))),
                   line);
        for (QString& offer : offers) {
            offer = offer.section(QLatin1Char('\t'), 0, 0);
        }
        offers.removeDuplicates();
        return offers;
    }

    static QString UsageOf(const QString& command)
    {
        static const QString help =
            RunTool(Installed(QStringLiteral("bin/vistorama-cli")), {QStringLiteral("--help")}).output;
        QString usage;
        bool isIts = false;
        for (const QString& line : help.split('\n')) {
            if (line.startsWith(QStringLiteral("  vistorama-cli "))) {
                isIts = line.startsWith(QStringLiteral("  vistorama-cli %1 ").arg(command));
            }
            if (isIts) {
                usage += line + '\n';
            }
        }
        return usage;
    }

    const CScratchFolder scratch;
};

const char* const Commands[] = {"new",
                                "deploy",
                                "info",
                                "check",
                                "destination add",
                                "destination list",
                                "destination remove",
                                "ftp-test",
                                "ftp-ls",
                                "ftp-mkdir",
                                "ftp-rename"};

QStringList Words(const char* words)
{
    QStringList list = QString::fromLatin1(words).split(' ', Qt::SkipEmptyParts);
    list.sort();
    return list;
}

} // namespace

TEST_F(CompletionTest, OffersAllCommands)
{
    const QStringList commands =
        Words("new deploy info check relink cache destination ftp-test ftp-ls ftp-mkdir ftp-rename");
    QStringList withOptions = commands + Words("--help --version");
    withOptions.sort();
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli ")), withOptions);
    EXPECT_EQ(FishOffers(QStringLiteral("vistorama-cli ")), commands);
    EXPECT_EQ(FishOffers(QStringLiteral("vistorama-cli --")), Words("--help --version"));
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli destination ")), Words("add list remove"));
    EXPECT_EQ(FishOffers(QStringLiteral("vistorama-cli destination ")), Words("add list remove"));
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli d")), Words("deploy destination"));
}

TEST_F(CompletionTest, OffersTheOptionsThatTheUsageNames)
{
    for (const char* command : Commands) {
        const QString name = QString::fromLatin1(command);
        ASSERT_FALSE(UsageOf(name).isEmpty() && name != QStringLiteral("destination list")) << command;
        const QStringList options = OptionsIn(UsageOf(name));
        const QString line = QStringLiteral("vistorama-cli %1 x --").arg(name);
        EXPECT_EQ(BashOffers(line), options) << command;
        EXPECT_EQ(FishOffers(line), options) << command;
    }
}

TEST_F(CompletionTest, OffersFilesOfTheRightKind)
{
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli deploy ")),
              (QStringList{"site", "trip.gallery", "two words.gallery"}));
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli info t")),
              (QStringList{"trip.gallery", "two words.gallery"}));
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli deploy trip.gallery ")), Words("site"));
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli check ")), Words("own.xml site"));
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli new x.gallery ")), Words("beach.JPG site"));
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli new x.gallery --watermark ")),
              Words("beach.JPG site"));
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli new x.gallery --tree ")), Words("site"));
    EXPECT_EQ(FishOffers(QStringLiteral("vistorama-cli deploy trip.gallery ")), Words("site/"));
    EXPECT_EQ(FishOffers(QStringLiteral("vistorama-cli info tr")), Words("trip.gallery"));
    EXPECT_EQ(FishOffers(QStringLiteral("vistorama-cli new x.gallery --tree ")), Words("site/"));
}

TEST_F(CompletionTest, OffersNamesThatTheProgramKnows)
{
    const QStringList layouts = Words("cards filmstrip journal mosaic portfolio slideshow");
    const QStringList styles = Words("auto film gallery-wall ink paper");
    const QStringList places =
        Words("top-left top top-right left centre right bottom-left bottom bottom-right");
    const struct {
        const char* line;
        QStringList offers;
    } rows[] = {
        {"vistorama-cli new x.gallery --layout ", layouts},
        {"vistorama-cli new x.gallery --style ", styles},
        {"vistorama-cli new x.gallery --position ", places},
        {"vistorama-cli new x.gallery --size-class ", Words("small middle large all")},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(BashOffers(QString::fromLatin1(row.line)), row.offers) << row.line;
        EXPECT_EQ(FishOffers(QString::fromLatin1(row.line)), row.offers) << row.line;
    }
}

TEST_F(CompletionTest, OffersStoredDestinationsQuotedWhereNeeded)
{
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli deploy trip.gallery --to ")),
              (QStringList{"home", "my\\ club"}));
    EXPECT_EQ(BashOffers(QStringLiteral("vistorama-cli destination remove h")), Words("home"));
    EXPECT_EQ(FishOffers(QStringLiteral("vistorama-cli deploy trip.gallery --to ")),
              (QStringList{"home", "my club"}));
}

TEST_F(CompletionTest, OffersNothingWhereNothingIsKnown)
{
    for (const char* line : {"vistorama-cli unknown ", "vistorama-cli new x.gallery --margin ",
                             "vistorama-cli destination list ", "vistorama-cli info trip.gallery ",
                             "vistorama-cli ftp-ls ", "vistorama-cli zz"}) {
        EXPECT_EQ(BashOffers(QString::fromLatin1(line)), QStringList()) << line;
    }
}

// zsh completes only at a terminal: it gets one, and lists what there is.
TEST_F(CompletionTest, ZshOffersCommandsOptionsAndFiles)
{
    const QString script =
        QStringLiteral(
            "zmodload zsh/zpty\n"
            "zpty shell zsh -f -i\n"
            "zpty -w shell \"stty cols 300; fpath=('%1' \\$fpath); autoload -Uz compinit; compinit -u -D; "
            "LISTMAX=1000; setopt no_beep; PS1='rea''dy> '; "
            "list() { zle list-choices; zle -R; zle -I; print '[fin''ished]'; }; zle -N list; bindkey '^T' "
            "list\"\n"
            "zpty -r shell out '*ready> *'\n"
            "zpty -n -w shell \"$1\"$'\\x14'\n"
            "zpty -r shell out '*\\[finished\\]*'\n"
            "print -r -- \"$out\"\n"
            "zpty -d shell\n")
            .arg(Installed(QStringLiteral("share/zsh/vendor-completions")));
    const struct {
        const char* line;
        QStringList offers;
    } rows[] = {
        {"vistorama-cli ",
         Words("new deploy info check relink cache destination ftp-test ftp-ls ftp-mkdir ftp-rename")},
        {"vistorama-cli deploy trip.gallery --", Words("--to --directory --quiet")},
        {"vistorama-cli new x.gallery --", OptionsIn(UsageOf(QStringLiteral("new")))},
        {"vistorama-cli destination ", Words("add list remove")},
        {"vistorama-cli info ", {"trip.gallery", "two\\ words.gallery", "site/"}},
        {"vistorama-cli new x.gallery --layout ",
         Words("cards filmstrip journal mosaic portfolio slideshow")},
    };
    for (const auto& row : rows) {
        const QString shown = Offers(QStringLiteral("zsh"), script, QString::fromLatin1(row.line)).join(' ');
        for (const QString& offer : row.offers) {
            EXPECT_TRUE(shown.contains(offer))
                << row.line << qPrintable(offer + QStringLiteral(" in ") + shown);
        }
        EXPECT_FALSE(shown.contains(QStringLiteral("page.html"))) << row.line;
    }
}
