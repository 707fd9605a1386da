#include "resources/Resources.h"

#include "TestCatalogue.h"

TEST(Resources, NamesHaveNoCaseAndWhatIsMissingIsNull)
{
    const QByteArray page = FindResource(QStringLiteral("246"), QStringLiteral("html"));
    EXPECT_FALSE(page.isEmpty());
    EXPECT_EQ(FindResource(QStringLiteral("246"), QStringLiteral("HTML")), page);
    EXPECT_TRUE(FindResource(QStringLiteral("246"), QStringLiteral("js")).isNull());
}

TEST(Resources, APageIsAsItStandsInItsFileWithoutACatalogue)
{
    EXPECT_EQ(FindPage(QStringLiteral("246"), {StringId::Loading}),
              FindResource(QStringLiteral("246"), QStringLiteral("html")));
}

TEST(Resources, TheWordsOfAPageComeFromTheCatalogueEscaped)
{
    const CInstalledCatalogue german([](int number, const std::vector<int>&) {
        return number == static_cast<int>(StringId::Loading) ? std::optional(QStringLiteral("L\u00e4dt <&>"))
                                                             : std::nullopt;
    });
    const QByteArray page = FindPage(QStringLiteral("246"), {StringId::Loading});
    EXPECT_TRUE(page.contains("<p>L\xc3\xa4"
                              "dt &lt;&amp;&gt;</p>"))
        << page.constData();
    EXPECT_FALSE(page.contains("Loading")) << page.constData();
}
