#include "ftpengine/sftp/SftpPackets.h"

#include "ftpengine/messages/EngineStatus.h"

namespace {

// The flags of ATTRS (section 5 of the draft): which fields follow.
constexpr uint32_t hasSize = 0x01;
constexpr uint32_t hasOwner = 0x02;
constexpr uint32_t hasPermissions = 0x04;
constexpr uint32_t hasTimes = 0x08;
constexpr uint32_t hasExtensions = 0x80000000;

// The kind of a file among its permissions, as POSIX has it.
constexpr uint32_t kindMask = 0170000;
constexpr uint32_t kindDirectory = 0040000;
constexpr uint32_t kindLink = 0120000;

void AppendUint32(std::string& bytes, uint32_t number)
{
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(number >> shift);
    }
}

bool IsOfKind(const SftpAttributes& attributes, uint32_t kind)
{
    return attributes.permissions && (*attributes.permissions & kindMask) == kind;
}

} // namespace

bool SftpAttributes::IsDirectory() const
{
    return IsOfKind(*this, kindDirectory);
}

bool SftpAttributes::IsLink() const
{
    return IsOfKind(*this, kindLink);
}

CSftpRequest::CSftpRequest(SftpType type) : type(type) {}

CSftpRequest& CSftpRequest::AddUint32(uint32_t number)
{
    AppendUint32(bytes, number);
    return *this;
}

CSftpRequest& CSftpRequest::AddUint64(uint64_t number)
{
    AddUint32(static_cast<uint32_t>(number >> 32));
    return AddUint32(static_cast<uint32_t>(number));
}

CSftpRequest& CSftpRequest::AddString(std::string_view text)
{
    AddUint32(static_cast<uint32_t>(text.size()));
    bytes += text;
    return *this;
}

CSftpRequest& CSftpRequest::AddPermissions(uint32_t permissions)
{
    return AddUint32(hasPermissions).AddUint32(permissions);
}

void CSftpRequest::AppendTo(std::string& queue, uint32_t id) const
{
    const bool hasId = type != SftpType::Init;
    AppendUint32(queue, static_cast<uint32_t>(sizeof type + (hasId ? sizeof id : 0) + bytes.size()));
    queue += static_cast<char>(type);
    if (hasId) {
        AppendUint32(queue, id);
    }
    queue += bytes;
}

std::string_view CSftpFields::TakeBytes(std::size_t count)
{
    if (count > rest.size()) {
        ThrowTracedLiterally("CSftpFields, packet too short", EngineStatus::UnknownReply);
    }
    const std::string_view taken = rest.substr(0, count);
    rest.remove_prefix(count);
    return taken;
}

uint32_t CSftpFields::TakeUint32()
{
    uint32_t number = 0;
    for (const char byte : TakeBytes(sizeof number)) {
        number = number << 8 | static_cast<uint8_t>(byte);
    }
    return number;
}

uint64_t CSftpFields::TakeUint64()
{
    const uint64_t high = TakeUint32();
    return high << 32 | TakeUint32();
}

std::string_view CSftpFields::TakeString()
{
    return TakeBytes(TakeUint32());
}

SftpAttributes CSftpFields::TakeAttributes()
{
    SftpAttributes attributes;
    const uint32_t flags = TakeUint32();
    if ((flags & hasSize) != 0) {
        attributes.size = TakeUint64();
    }
    if ((flags & hasOwner) != 0) {
        TakeUint64(); // numbers of user and group, which mean nothing here
    }
    if ((flags & hasPermissions) != 0) {
        attributes.permissions = TakeUint32();
    }
    if ((flags & hasTimes) != 0) {
        TakeUint32(); // of the last access
        attributes.modified = TakeUint32();
    }
    if ((flags & hasExtensions) != 0) {
        for (uint32_t left = TakeUint32(); left > 0; --left) {
            TakeString();
            TakeString();
        }
    }
    return attributes;
}

std::optional<SftpStatus> SftpAnswer::ReadStatus() const
{
    if (type != SftpType::Status) {
        return std::nullopt;
    }
    CSftpFields reader(fields);
    SftpStatus status{.code = reader.TakeUint32(), .text = {}};
    // Servers of the first versions send no words.
    if (!reader.IsAtEnd()) {
        status.text = reader.TakeString();
    }
    return status;
}

std::vector<SftpEntry> SftpAnswer::ReadNames() const
{
    if (type != SftpType::Name) {
        ThrowTracedLiterally("SftpAnswer, no names", EngineStatus::UnknownReply);
    }
    CSftpFields reader(fields);
    std::vector<SftpEntry> entries;
    for (uint32_t left = reader.TakeUint32(); left > 0; --left) {
        SftpEntry& entry = entries.emplace_back();
        entry.name = reader.TakeString();
        entry.longName = reader.TakeString();
        entry.attributes = reader.TakeAttributes();
    }
    return entries;
}

std::map<std::string, std::string, std::less<>> ReadExtensions(CSftpFields fields)
{
    std::map<std::string, std::string, std::less<>> extensions;
    while (!fields.IsAtEnd()) {
        const std::string name(fields.TakeString());
        extensions[name] = fields.TakeString();
    }
    return extensions;
}
