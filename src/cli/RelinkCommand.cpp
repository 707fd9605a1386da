#include <limits>

#include "cli/Answers.h"
#include "cli/CommandArguments.h"
#include "cli/Commands.h"
#include "cli/ProjectSession.h"
#include "common/StopSignal.h"
#include "document/project/AbsentFiles.h"
#include "resources/StringTable.h"

int RunRelink(const QStringList& arguments)
{
    const CommandArguments parsed =
        ParseArguments(arguments, {.valueOptions = {},
                                   .switches = {},
                                   .minPositional = 2,
                                   .maxPositional = std::numeric_limits<qsizetype>::max()});
    QStringList folders;
    for (const QString& folder : parsed.positional.mid(1)) {
        folders += ExistingPath(folder);
    }
    CProjectSession session;
    session.OpenExisting(parsed.positional.front());
    CGalleryProject& project = session.GetProject();
    const CStopSignal never;
    int found = 0;
    for (const QString& folder : folders) {
        const CAbsentFileSearch search(project.GetAbsentFiles(), project.GetPresentFiles());
        found += project.Relocate(search.Find(folder, never));
    }
    if (found > 0) {
        project.Save(project.GetPath());
    }
    PrintOut(Text(StringId::FilesRelinked, found, static_cast<int>(project.GetAbsentFiles().size())) +
             QLatin1Char('\n'));
    return ExitDone;
}
