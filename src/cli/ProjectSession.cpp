#include "cli/ProjectSession.h"

#include "cli/CommandArguments.h"
#include "common/Platform.h"
#include "document/project/ProjectFilePath.h"

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
    const QString file = ExistingPath(WithProjectEnding(path));
    RequireOrdinaryFile(file);
    project.Open(file);
}
