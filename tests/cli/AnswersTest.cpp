#include "cli/Answers.h"

TEST(Answers, AFailureIsThreeLinesWhateverItsTextsHold)
{
    EXPECT_EQ(FailureLines(QStringLiteral("a\nb"), QStringLiteral("c\r\nd\re"), QString()),
              QStringLiteral("caption: a\\nb\ndescription: c\\nd\\ne\nadvice: \n"));
}

TEST(Answers, ControlCharactersAreReplacedForTheTerminal)
{
    EXPECT_EQ(Printable(QStringLiteral("a\u001b[31m\u0007\u0085 \u00e4")),
              QStringLiteral("a\uFFFD[31m\uFFFD\uFFFD \u00e4"));
}
