#include "common/Variant.h"

TEST(Variant, KnowsItsTypeAndAnswersNeutrallyForOthers)
{
    const struct {
        CVariant variant;
        CVariant::Type type;
        int32_t integer;
        double number;
        QString string;
    } rows[] = {
        {CVariant(), CVariant::Type::Empty, 0, 0.0, QString()},
        {CVariant(7), CVariant::Type::Integer, 7, 0.0, QString()},
        {CVariant::Real(1.5), CVariant::Type::Real, 0, 1.5, QString()},
        {CVariant::Date(2.5), CVariant::Type::Date, 0, 2.5, QString()},
        {CVariant(QStringLiteral("x")), CVariant::Type::String, 0, 0.0, QStringLiteral("x")},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.variant.GetType(), row.type);
        EXPECT_EQ(row.variant.GetInteger(), row.integer);
        EXPECT_EQ(row.variant.GetNumber(), row.number);
        EXPECT_EQ(row.variant.GetString(), row.string);
        EXPECT_EQ(row.variant.IsEmpty(), row.type == CVariant::Type::Empty);
    }
}

TEST(Variant, AStringWithoutTextIsAValueAndADateIsNoPlainNumber)
{
    EXPECT_FALSE(CVariant(QString()).IsEmpty());
    EXPECT_FALSE(CVariant::Real(5) == CVariant::Date(5));
}

TEST(VariableMap, NamesAreCaseInsensitive)
{
    CVariableMap map;
    map.Set(QStringLiteral("Title"), QStringLiteral("a"));
    map.Set(QStringLiteral("TITLE"), QStringLiteral("b"));
    CVariant value;
    EXPECT_TRUE(map.Get(QStringLiteral("tItLe"), value));
    EXPECT_EQ(value.GetString(), QStringLiteral("b"));
    EXPECT_EQ(map.GetEntries().size(), 1u);
    EXPECT_EQ(map.GetEntries().begin()->first, QStringLiteral("title"));
}

TEST(VariableMap, AMissingNameLeavesTheResultAlone)
{
    CVariableMap map;
    CVariant value(7);
    EXPECT_FALSE(map.Get(QStringLiteral("title"), value));
    EXPECT_EQ(value.GetInteger(), 7);
}
