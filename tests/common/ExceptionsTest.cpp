#include "common/Exceptions.h"

#include <cerrno>

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
