#include "Check.h"
#include "ftpengine/messages/FTPDirectoryContent.h"

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
    return 0;
}
