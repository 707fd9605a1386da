#include "cli/ProjectSession.h"

#include <QDir>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Platform.h"

CProjectSession::CProjectSession()
    : settings(CreateProgramSettings()),
      tempFolder(FindTemporaryFolder()),
      project(CProjectEnvironment{.programFolder = FindProgramFolder(),
                                  .picturesFolder = FindPicturesFolder(),
                                  .settings = settings.get(),
                                  .tempFolder = &tempFolder,
                                  .covers = {.folder = FindCoversFolder()}})
{}

void CProjectSession::OpenExisting(const QString& path)
{
    if (!FileExists(path)) {
        throw CFileException(
            path, {StringId::CouldNotOpenFile, StringId::FileDoesNotExist, StringId::CheckFolderAndFileName});
    }
    project.Open(QDir(path).absolutePath());
}
