#include "resources/StringTable.h"

TEST(StringTable, ATextWithoutArgumentsStaysAsItStands)
{
    EXPECT_EQ(Text(StringId::UnexpectedElse), QStringLiteral("Unexpected <%else%> element found."));
    EXPECT_EQ(Text(StringId::InvalidObjectName, ""), QStringLiteral("ERROR:Invalid object name: ."));
}

TEST(StringTable, TheNumbersOfTextsAreStable)
{
    const struct {
        int number;
        const char* text;
    } rows[] = {
        {132, "Edit hypertext reference URL and text"},
        {154, "Move up"},
        {155, "Move down"},
        {156, "Rotate counter-clockwise"},
        {157, "Delete"},
        {159, "Edit text"},
        {164, "Add picture"},
        {170, "Add all pictures"},
        {180, "Rotate clockwise"},
        {232, "Small pictures (<200x200 pixels)"},
        {233, "Mid-size pictures (200x200<600x600)"},
        {234, "Large pictures (>600x600)"},
        {135, "Please send detailed information to customer support service."},
        {136, "Template parsing error occured."},
        {137, "Please contact template developer."},
        {140, "Could not access template."},
        {146, "Could not open file %s."},
        {147, "Probably the file does not exist."},
        {148, "Please inform your gallery template developer."},
        {149, "Could not find template element '%hs'."},
        {152, "ERROR:Invalid template variable syntax. Object name was not specified."},
        {153, "ERROR:Invalid object name: %s."},
        {168, "Could not find encoder for '%s'."},
        {169, "Could not save image to '%s'."},
        {185, "The system could not create a new file %s."},
        {186, "Probably the file name is invalid."},
        {187, "Please check the folder existence and the file name correctness."},
        {220, "Required template kind %s was not find."},
        {222, "Unexpected error occured."},
        {12545, "Could not copy file %s to %s."},
        {12546, "Could not create directory %s."},
        {12547, "Could not clear readonly attribute for file %s."},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Text(static_cast<StringId>(row.number)), QString::fromLatin1(row.text)) << row.number;
    }
}

TEST(StringTable, AnUnknownNumberHasNoText)
{
    EXPECT_EQ(Text(static_cast<StringId>(1)), QString());
}

TEST(StringTable, EveryTextHasWords)
{
    ASSERT_GT(GetTextRows().size(), 400u);
    for (const TextRow& row : GetTextRows()) {
        EXPECT_STRNE(row.words, "") << row.name;
        EXPECT_EQ(Text(row.id), QString::fromUtf8(row.words)) << row.name;
    }
}
