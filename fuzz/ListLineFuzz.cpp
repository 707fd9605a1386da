#include "Check.h"
#include "ftpengine/messages/FTPDirectoryContent.h"
#include "ftpengine/messages/RemoteListing.h"

static void CheckEntries(const std::vector<RemoteEntry>& entries)
{
    for (const RemoteEntry& entry : entries) {
        Check(!entry.name.isEmpty() && !entry.name.contains(QLatin1Char('/')) &&
                  entry.name != QLatin1String(".."),
              "a name leads nowhere else");
        Check(entry.size.value_or(0) >= 0, "a size is none below zero");
    }
}

// A listing, and its lines one by one.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QString listing =
        QString::fromUtf8(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    if (const auto item = ParseListLine(listing)) {
        Check(item->name.size() <= listing.size(), "a name is a piece of its line");
        Check(int{item->isFile} + item->isDirectory + item->isCurrent + item->isParent <= 1,
              "an item is of one kind");
    }
    const CFTPDirectoryContent content(QStringLiteral("photos"), listing);
    Check(content.GetListing() == listing, "the listing stays as it came");
    Check(static_cast<qsizetype>(content.GetItems().size()) <= listing.count(QStringLiteral("\r\n")),
          "a line gives one item");
    const std::string_view raw(reinterpret_cast<const char*>(bytes), size);
    CheckEntries(ReadFacts(raw));
    CheckEntries(ReadListed(raw, QDateTime(QDate(2026, 3, 10), QTime(12, 0), Qt::UTC)));
    return 0;
}
