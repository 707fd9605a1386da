#include "resources/TextCatalogue.h"

#include <atomic>
#include <thread>

#include "TestCatalogue.h"
#include "resources/StringTable.h"

namespace {

// One text under one number.
CTestCatalogue::Answer Holding(StringId id, const QString& text)
{
    return [id, text](int number, const std::vector<int>&) {
        return number == static_cast<int>(id) ? std::optional(text) : std::nullopt;
    };
}

} // namespace

TEST(TextCatalogue, AnInstalledOneReplacesItsTextsAndNoOthers)
{
    {
        const CInstalledCatalogue german(Holding(StringId::MoveUp, QStringLiteral("Nach oben")));
        EXPECT_EQ(Text(StringId::MoveUp), QStringLiteral("Nach oben"));
        EXPECT_EQ(Text(StringId::MoveDown), QStringLiteral("Move down"));
        EXPECT_EQ(EnglishText(StringId::MoveUp), QStringLiteral("Move up"));
    }
    EXPECT_EQ(Text(StringId::MoveUp), QStringLiteral("Move up"));
}

TEST(TextCatalogue, ArgumentsComeWhereTheTranslationWantsThem)
{
    const CInstalledCatalogue german(
        Holding(StringId::FileNotCopied, QStringLiteral("Nach %2$s konnte %1$s nicht kopiert werden.")));
    EXPECT_EQ(Text(StringId::FileNotCopied, "a", "b"),
              QStringLiteral("Nach b konnte a nicht kopiert werden."));
}

TEST(TextCatalogue, ATranslationWithOtherPlaceholdersIsNotTaken)
{
    const CInstalledCatalogue broken(Holding(StringId::FileNotCopied, QStringLiteral("%s geht nicht.")));
    EXPECT_EQ(Text(StringId::FileNotCopied, "a", "b"), QStringLiteral("Could not copy file a to b."));
    EXPECT_EQ(Text(StringId::FileNotCopied), QStringLiteral("Could not copy file %s to %s."));
}

TEST(TextCatalogue, ThePluralFormIsChosenByTheNumbersAmongTheArguments)
{
    const CInstalledCatalogue german([](int number, const std::vector<int>& numbers) {
        if (number == static_cast<int>(StringId::PicturesDropped)) {
            return std::optional(numbers == std::vector{1} ? QStringLiteral("Ein Bild.")
                                                           : QStringLiteral("%d Bilder."));
        }
        return number == static_cast<int>(StringId::ClusterLine) && numbers == std::vector{3}
                   ? std::optional(QStringLiteral("%2$d in %1$s"))
                   : std::nullopt;
    });
    EXPECT_EQ(Text(StringId::PicturesDropped, 1), QStringLiteral("Ein Bild."));
    EXPECT_EQ(Text(StringId::PicturesDropped, 2), QStringLiteral("2 Bilder."));
    EXPECT_EQ(Text(StringId::ClusterLine, "2020", 3), QStringLiteral("3 in 2020"));
    EXPECT_EQ(Text(StringId::ClusterLine, "2020", 4), QStringLiteral("2020: 4 pictures"));
}

TEST(TextCatalogue, AnotherOneCanBeInstalledWhileTextsAreRead)
{
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> readers;
        for (int i = 0; i < 4; ++i) {
            readers.emplace_back([&wrong](const std::stop_token& stop) {
                do {
                    const QString text = Text(StringId::MoveUp);
                    wrong += text == QStringLiteral("Move up") || text == QStringLiteral("Nach oben") ? 0 : 1;
                } while (!stop.stop_requested());
            });
        }
        for (int i = 0; i < 200; ++i) {
            const CInstalledCatalogue german(Holding(StringId::MoveUp, QStringLiteral("Nach oben")));
            EXPECT_EQ(Text(StringId::MoveUp), QStringLiteral("Nach oben"));
        }
    }
    EXPECT_EQ(wrong, 0);
}
