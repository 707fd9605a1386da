#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ftpengine/session/RemoteSession.h"
#include "ftpengine/sftp/SftpChannel.h"

// What an open directory holds, several requests on their way at once. end: the status after the last entry.
struct SftpListing {
    std::vector<SftpEntry> entries; // without "." and ".."
    SftpStatus end;
};
// Throws an int; MessageTooLong for a listing without end.
SftpListing ReadListing(CSftpChannel& channel, std::string_view handle);

// A listing tells of links themselves: gives each the attributes of what it leads to. One that leads nowhere
// stays a file without a size.
void FollowLinks(CSftpChannel& channel, std::string_view directory, std::vector<SftpEntry>& entries);

RemoteEntry MakeRemoteEntry(const SftpEntry& entry);

// "a" and "b" give "a/b".
std::string JoinRemotePath(std::string_view directory, std::string_view name);
