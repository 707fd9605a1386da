#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The packets of SFTP, version 3 (draft-ietf-secsh-filexfer-02), as bytes and back: a length of 32 bits, a
// type, for all but the first exchange a number that the answer repeats, and fields. Values; nothing here
// sends or waits.

enum class SftpType : uint8_t {
    Init = 1,
    Version = 2,
    Open = 3,
    Close = 4,
    Read = 5,
    Write = 6,
    FStat = 8,
    OpenDir = 11,
    ReadDir = 12,
    Remove = 13,
    MkDir = 14,
    RmDir = 15,
    RealPath = 16,
    Stat = 17,
    Rename = 18,
    Status = 101,
    Handle = 102,
    Data = 103,
    Name = 104,
    Attrs = 105,
    Extended = 200,
    ExtendedReply = 201,
};

// For SftpType::Open.
namespace SftpOpen {
inline constexpr uint32_t Read = 0x01;
inline constexpr uint32_t Write = 0x02;
inline constexpr uint32_t Create = 0x08;
inline constexpr uint32_t Truncate = 0x10;
} // namespace SftpOpen

// What a server tells of a file.
struct SftpAttributes {
    std::optional<uint64_t> size;
    std::optional<uint32_t> permissions; // with the kind of the file, as in st_mode
    std::optional<uint32_t> modified;    // seconds since 1970, UTC

    bool IsDirectory() const;
    bool IsLink() const;
};

// A packet on its way out.
class CSftpRequest {
public:
    explicit CSftpRequest(SftpType type);

    CSftpRequest& AddUint32(uint32_t number);
    CSftpRequest& AddUint64(uint64_t number);
    CSftpRequest& AddString(std::string_view text);
    // Nothing but these permissions, which the server's umask narrows.
    CSftpRequest& AddPermissions(uint32_t permissions);

    // Appends the whole packet. id: the number that the answer repeats; Init has none.
    void AppendTo(std::string& queue, uint32_t id) const;

private:
    const SftpType type;
    std::string bytes; // of the fields
};

// Takes the fields of a packet that has come, one after the other. The bytes stay with their owner. A field
// that isn't there whole throws UnknownReply (EngineStatus.h).
class CSftpFields {
public:
    explicit CSftpFields(std::string_view bytes) : rest(bytes) {}

    uint32_t TakeUint32();
    uint64_t TakeUint64();
    std::string_view TakeString();
    SftpAttributes TakeAttributes();
    bool IsAtEnd() const { return rest.empty(); }

private:
    std::string_view TakeBytes(std::size_t count);

    std::string_view rest;
};

// The result of a request that has no other answer, and of each that failed.
struct SftpStatus {
    uint32_t code = 0;
    std::string text; // the server's words
};

struct SftpEntry {
    std::string name;
    std::string longName; // a line as "ls -l" writes it
    SftpAttributes attributes;
};

// An answer as it came, without its length and number.
struct SftpAnswer {
    SftpType type = SftpType::Status;
    std::string fields;

    // Nothing if it is another kind of answer. Throw UnknownReply if it is damaged.
    std::optional<SftpStatus> ReadStatus() const;
    std::vector<SftpEntry> ReadNames() const; // throws for another kind, too
};

// The extensions that a server offers, from the fields of its Version packet after the number: name and
// version of each.
std::map<std::string, std::string, std::less<>> ReadExtensions(CSftpFields fields);
