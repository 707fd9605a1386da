#include "common/Exceptions.h"

#include <cerrno>

TEST(FormatText, FillsPlaceholdersInOrder)
{
    const struct {
        const char* format;
        QString expected;
    } rows[] = {
        {"Could not copy file %s to %s.", QStringLiteral("Could not copy file a to b%s.")},
        {"%d%%", QStringLiteral("a%")},
        {"<%%=object.%hs%%>", QStringLiteral("<%=object.a%>")},
        {"'%hc' and %q", QStringLiteral("'a' and %q")},
        {"%s %s %s", QStringLiteral("a b%s %s")},
        {"ends in %", QStringLiteral("ends in %")},
    };
    for (const auto& row : rows) {
        // A placeholder inside an argument is no placeholder.
        EXPECT_EQ(FormatText(QString::fromLatin1(row.format), {"a", "b%s"}), row.expected) << row.format;
    }
}

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

TEST(Exceptions, AFileExceptionNamesThePathInItsCaption)
{
    const CFileException error(
        QStringLiteral("/a/b.html"),
        {StringId::FileNotCreated, StringId::FileNameInvalid, StringId::CheckFolderAndFileName});
    EXPECT_EQ(error.GetCaption(), QStringLiteral("The system could not create a new file /a/b.html."));
    EXPECT_EQ(error.GetDescription(), QStringLiteral("Probably the file name is invalid."));
    EXPECT_EQ(error.GetAdvice(),
              QStringLiteral("Please check the folder existence and the file name correctness."));
}

TEST(Exceptions, ASystemErrorCarriesItsOwnTextAndFittingAdvice)
{
    const struct {
        int number;
        StringId advice;
    } rows[] = {
        {EACCES, StringId::CheckRights},
        {EROFS, StringId::CheckRights},
        {ENOSPC, StringId::FreeDiskSpace},
        {EDQUOT, StringId::FreeDiskSpace},
        {ENOENT, StringId::CheckPathStillThere},
        {ENAMETOOLONG, StringId::ShortenName},
        {EIO, StringId::CheckDisk},
        {EINVAL, StringId::CheckFolderAndFileName},
    };
    for (const auto& row : rows) {
        const CWin32Exception error(row.number, QStringLiteral("message"));
        EXPECT_EQ(error.GetErrorNumber(), row.number);
        EXPECT_EQ(error.GetCaption(), QStringLiteral("message"));
        EXPECT_EQ(error.GetDescription(), QString::fromUtf8(strerror(row.number)));
        EXPECT_EQ(error.GetAdvice(), Text(row.advice));
    }
}

TEST(Exceptions, AnUnexpectedExceptionNamesItsPlaceInTheSource)
{
    const CUnexpectedException error("GalleryProject", 260, QStringLiteral("Buffer insufficient."));
    EXPECT_EQ(error.GetCaption(),
              QStringLiteral("Unexpected error occured.\nSource file: GalleryProject(260)"));
    EXPECT_EQ(error.GetDescription(), QStringLiteral("Buffer insufficient."));
    EXPECT_EQ(error.GetAdvice(),
              QStringLiteral("Please send detailed information to customer support service."));
}
