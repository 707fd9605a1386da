#pragma once

#include <optional>
#include <vector>

#include <QString>

// One entry of a listing on a server.
struct CFTPDirectoryItem {
    QString name;
    bool isFile = false;
    bool isDirectory = false; // not for "." and ".."
    bool isCurrent = false;   // "."
    bool isParent = false;    // ".."
};

// Reads one line, without its end, of a listing in the form of the Unix "ls -l"; no other form is known.
// Nothing if the line isn't one.
std::optional<CFTPDirectoryItem> ParseListLine(const QString& line);

// A directory on a server as a listing showed it. Immutable; made on the task's thread and owned by whoever
// receives it.
class CFTPDirectoryContent {
public:
    // listing: lines that end in "\r\n"; what stands after the last line end is dropped, and so is every
    // line that can't be read. secondText is kept, and has no influence.
    CFTPDirectoryContent(const QString& directory, const QString& listing, const QString& secondText = {});

    // Of a server whose entries need no reading.
    CFTPDirectoryContent(const QString& directory, const QString& listing,
                         std::vector<CFTPDirectoryItem> items);

    const QString& GetDirectory() const { return directory; }
    // As it came, so that a person can look at a listing that can't be read.
    const QString& GetListing() const { return listing; }
    const std::vector<CFTPDirectoryItem>& GetItems() const { return items; }
    const QString& GetSecondText() const { return secondText; }

private:
    QString directory;
    QString listing;
    std::vector<CFTPDirectoryItem> items;
    QString secondText;
};
