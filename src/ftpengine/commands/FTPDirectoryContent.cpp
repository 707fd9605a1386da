#include "ftpengine/commands/FTPDirectoryContent.h"

CFTPDirectoryContent::CFTPDirectoryContent(const QString& directory, const QString& listing,
                                           const QString& secondText)
    : directory(directory), listing(listing), secondText(secondText)
{
    constexpr QLatin1String lineEnd("\r\n");
    qsizetype begin = 0;
    for (qsizetype end = listing.indexOf(lineEnd); end >= 0; end = listing.indexOf(lineEnd, begin)) {
        CFTPDirectoryItem item;
        if (ParseListLine(item, listing.mid(begin, end - begin))) {
            items.push_back(item);
        }
        begin = end + lineEnd.size();
    }
}
