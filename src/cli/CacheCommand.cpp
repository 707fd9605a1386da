#include "cli/Answers.h"
#include "cli/CommandArguments.h"
#include "cli/Commands.h"
#include "common/Platform.h"
#include "content/ImageCache.h"
#include "deploy/server/SiteFolder.h"
#include "resources/StringTable.h"

int RunCache(const QStringList& arguments)
{
    const QString size = QStringLiteral("size");
    const QString clear = QStringLiteral("clear");
    const CommandArguments parsed = ParseArguments(
        arguments, {.valueOptions = {}, .switches = {size, clear}, .minPositional = 0, .maxPositional = 0});
    if (parsed.Has(size) == parsed.Has(clear)) {
        throw CWrongUse(Text(StringId::CacheNeedsAction));
    }
    if (parsed.Has(clear)) {
        ClearCaches();
        ClearSites(FindSitesFolder());
    } else {
        // A number of bytes for scripts.
        PrintOut(QString::number(GetSizeOfCaches() + GetSizeOfSites(FindSitesFolder())) + QLatin1Char('\n'));
    }
    return ExitDone;
}
