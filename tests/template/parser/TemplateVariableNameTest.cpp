#include "template/parser/TemplateVariableName.h"

#include "template/parser/TemplateParsingException.h"

TEST(TemplateVariableName, SplitsAtTheFirstPoint)
{
    const struct {
        const char16_t* text;
        const char16_t* object;
        const char16_t* variable;
    } rows[] = {
        {u"gallery.name", u"gallery", u"name"},
        {u"a.b.c", u"a", u"b.c"},
        {u".x", u"", u"x"},
        {u"x.", u"x", u""},
        {u".", u"", u""},
        {u" a . b ", u" a ", u" b "},
        {u"\u00fc.\u4e16", u"\u00fc", u"\u4e16"},
    };
    for (const auto& row : rows) {
        const CTemplateVariableName name(QString::fromUtf16(row.text));
        EXPECT_EQ(name.GetObjectName(), QString::fromUtf16(row.object));
        EXPECT_EQ(name.GetVariableName(), QString::fromUtf16(row.variable));
        EXPECT_FALSE(name.GetObjectName().isNull());
        EXPECT_FALSE(name.GetVariableName().isNull());
    }
    EXPECT_THROW(CTemplateVariableName(QStringLiteral("gallery")), CTemplateParsingException);
    EXPECT_THROW(CTemplateVariableName{QString()}, CTemplateParsingException);
}
