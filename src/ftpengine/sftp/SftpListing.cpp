#include "ftpengine/sftp/SftpListing.h"

#include <deque>
#include <optional>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/sftp/SftpRefusal.h"

namespace {

constexpr std::size_t readsAtOnce = 8;
constexpr std::size_t statsAtOnce = 64;
constexpr std::size_t mostEntries = 1'000'000;

// A "/" would make a file of another directory of it.
bool IsUsableName(const std::string& name)
{
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

// Takes the entries; false if there are none, which no server should say but ends the listing all the same.
bool TakeEntries(const SftpAnswer& answer, std::vector<SftpEntry>& entries)
{
    std::vector<SftpEntry> taken = answer.ReadNames();
    for (SftpEntry& entry : taken) {
        if (IsUsableName(entry.name)) {
            entries.push_back(std::move(entry));
        }
    }
    if (entries.size() > mostEntries) {
        ThrowTracedLiterally("ReadListing, listing without end", EngineStatus::MessageTooLong);
    }
    return !taken.empty();
}

void TakeTarget(const SftpAnswer& answer, SftpEntry& entry)
{
    entry.attributes.size.reset();
    if (answer.type == SftpType::Attrs) {
        entry.attributes = CSftpFields(answer.fields).TakeAttributes();
    }
}

bool IsDirectory(const SftpEntry& entry)
{
    return entry.attributes.permissions ? entry.attributes.IsDirectory()
                                        : !entry.longName.empty() && entry.longName[0] == 'd';
}

} // namespace

SftpListing ReadListing(CSftpChannel& channel, std::string_view handle)
{
    SftpListing listing;
    std::optional<SftpStatus> end;
    std::deque<uint32_t> asked;
    do {
        while (!end && asked.size() < readsAtOnce) {
            asked.push_back(channel.Post(CSftpRequest(SftpType::ReadDir).AddString(handle)));
        }
        const SftpAnswer answer = channel.Await(asked.front());
        asked.pop_front();
        const std::optional<SftpStatus> status = answer.ReadStatus();
        // What else was asked for comes after the end, and says nothing.
        if (!end && status) {
            end = status;
        } else if (!end && !TakeEntries(answer, listing.entries)) {
            end = SftpStatus{.code = SftpCode::EndOfFile, .text = {}};
        }
    } while (!end || !asked.empty());
    listing.end = *end;
    return listing;
}

void FollowLinks(CSftpChannel& channel, std::string_view directory, std::vector<SftpEntry>& entries)
{
    std::deque<std::pair<SftpEntry*, uint32_t>> asked;
    const auto takeOldest = [&] {
        const auto [entry, id] = asked.front();
        asked.pop_front();
        TakeTarget(channel.Await(id), *entry);
    };
    for (SftpEntry& entry : entries) {
        if (!entry.attributes.IsLink()) {
            continue;
        }
        if (asked.size() == statsAtOnce) {
            takeOldest();
        }
        const std::string path = JoinRemotePath(directory, entry.name);
        asked.emplace_back(&entry, channel.Post(CSftpRequest(SftpType::Stat).AddString(path)));
    }
    while (!asked.empty()) {
        takeOldest();
    }
}

RemoteEntry MakeRemoteEntry(const SftpEntry& entry)
{
    RemoteEntry made{
        .name = Widen(entry.name), .isDirectory = IsDirectory(entry), .size = {}, .modified = {}};
    if (!made.isDirectory && entry.attributes.size) {
        made.size = static_cast<int64_t>(*entry.attributes.size);
    }
    if (entry.attributes.modified) {
        made.modified = *entry.attributes.modified;
    }
    return made;
}

std::string JoinRemotePath(std::string_view directory, std::string_view name)
{
    std::string path(directory);
    if (!path.empty() && path.back() != '/' && !name.empty()) {
        path += '/';
    }
    return path += name;
}
