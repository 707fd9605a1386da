#include "common/Exceptions.h"

#include <cerrno>
#include <system_error>

#include "common/Text.h"

namespace {

StringId AdviceFor(int errorNumber)
{
    switch (errorNumber) {
    case EACCES:
    case EPERM:
    case EROFS:
        return StringId::CheckRights;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return StringId::FreeDiskSpace;
    case ENOENT:
    case ENOTDIR:
    case ESTALE:
        return StringId::CheckPathStillThere;
    case ENAMETOOLONG:
        return StringId::ShortenName;
    case EIO:
        return StringId::CheckDisk;
    default:
        return StringId::CheckFolderAndFileName;
    }
}

} // namespace

QString SystemErrorText(int errorNumber)
{
    return Widen(std::generic_category().message(errorNumber));
}

CGenericException::CGenericException(const QString& caption, const QString& description,
                                     const QString& advice)
    : caption(caption),
      description(description),
      advice(advice),
      narrowText(Narrow(caption + " " + description))
{}

CFileException::CFileException(const QString& path, const Texts& texts)
    : CGenericException(Text(texts.caption, path), Text(texts.reason), Text(texts.solution))
{}

CWin32Exception::CWin32Exception(int errorNumber, const QString& message)
    : CGenericException(message, SystemErrorText(errorNumber), Text(AdviceFor(errorNumber))),
      errorNumber(errorNumber)
{}

CUnexpectedException::CUnexpectedException(const char* sourceFile, int line, const QString& description)
    : CGenericException(
          Text(StringId::UnexpectedErrorSource, Text(StringId::UnexpectedErrorCaption), sourceFile, line),
          description, Text(StringId::UnexpectedErrorAdvice))
{}
