#include "support/MemorySftpServer.h"

#include <algorithm>
#include <cstring>

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/sftp/SftpRefusal.h"

namespace {

constexpr uint32_t directoryKind = 0040000;
constexpr uint32_t fileKind = 0100000;
constexpr uint32_t linkKind = 0120000;

const std::map<SftpType, const char*> names = {
    {SftpType::Open, "OPEN"},       {SftpType::Close, "CLOSE"},       {SftpType::Read, "READ"},
    {SftpType::Write, "WRITE"},     {SftpType::FStat, "FSTAT"},       {SftpType::OpenDir, "OPENDIR"},
    {SftpType::ReadDir, "READDIR"}, {SftpType::Remove, "REMOVE"},     {SftpType::MkDir, "MKDIR"},
    {SftpType::RmDir, "RMDIR"},     {SftpType::RealPath, "REALPATH"}, {SftpType::Stat, "STAT"},
    {SftpType::Rename, "RENAME"},   {SftpType::Extended, "EXTENDED"},
};

// Packets of a server are built like requests: a type, a number, fields.
std::string Bytes(const CSftpRequest& packet, uint32_t id)
{
    std::string bytes;
    packet.AppendTo(bytes, id);
    return bytes;
}

std::string Status(uint32_t id, uint32_t code, std::string_view words)
{
    return Bytes(CSftpRequest(SftpType::Status).AddUint32(code).AddString(words).AddString("en"), id);
}

std::string Done(uint32_t id)
{
    return Status(id, SftpCode::Ok, "Success");
}

std::string Missing(uint32_t id)
{
    return Status(id, SftpCode::NoSuchFile, "No such file");
}

std::string Failed(uint32_t id)
{
    return Status(id, SftpCode::Failure, "Failure");
}

uint32_t KindOf(const CMemorySftpServer::Node& node)
{
    return node.isDirectory ? directoryKind : node.target.empty() ? fileKind : linkKind;
}

void AddAttributes(CSftpRequest& packet, const CMemorySftpServer::Node& node, uint64_t size)
{
    packet.AddUint32(0x01 | 0x02 | 0x04 | 0x08).AddUint64(size).AddUint64(0);
    packet.AddUint32(KindOf(node) | node.permissions).AddUint32(node.modified).AddUint32(node.modified);
}

std::string ParentOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool IsOfHandle(SftpType type)
{
    return type == SftpType::Close || type == SftpType::Read || type == SftpType::Write ||
           type == SftpType::FStat || type == SftpType::ReadDir;
}

} // namespace

CMemorySftpServer::CMemorySftpServer()
{
    nodes["/"].isDirectory = true;
    nodes["/home"].isDirectory = true;
}

void CMemorySftpServer::Take(std::string_view bytes)
{
    incoming += bytes;
    std::vector<std::string> answered;
    while (incoming.size() >= 4) {
        const std::size_t length = CSftpFields(incoming).TakeUint32();
        if (incoming.size() < 4 + length) {
            break;
        }
        const std::string packet = incoming.substr(4, length);
        incoming.erase(0, 4 + length);
        const auto type = static_cast<SftpType>(packet[0]);
        CSftpFields fields(std::string_view(packet).substr(1));
        const uint32_t id = fields.TakeUint32(); // the version in Init
        ++answers;
        answered.push_back(Answer(type, id, fields));
    }
    if (answersLastFirst) {
        std::reverse(answered.begin(), answered.end());
    }
    for (const std::string& answer : answered) {
        outgoing += answer;
    }
}

std::string CMemorySftpServer::Answer(SftpType type, uint32_t id, CSftpFields fields)
{
    if (type == SftpType::Init) {
        CSftpRequest offer(SftpType::Version);
        for (const auto& [name, value] : extensions) {
            offer.AddString(name).AddString(value);
        }
        return Bytes(offer, version); // which stands where others have their number
    }
    CSftpFields ahead = fields;
    const std::string first(ahead.TakeString());
    const bool hasPath = !IsOfHandle(type) && type != SftpType::Extended;
    const std::string path = hasPath ? Resolve(first) : std::string();
    const std::string shown = IsOfHandle(type) ? handles[first].path : hasPath ? path : first;
    requests.push_back(std::string(names.at(type)) + ' ' + shown);
    const auto refusal = refuse ? refuse(type, path) : std::nullopt;
    if (refusal) {
        if (type == SftpType::Close) {
            handles.erase(first);
        }
        return Status(id, refusal->code, refusal->text);
    }
    if (type == SftpType::Extended) {
        return AnswerExtended(id, fields);
    }
    return hasPath ? AnswerPath(type, id, fields) : AnswerHandle(type, id, fields);
}

std::string CMemorySftpServer::AnswerPath(SftpType type, uint32_t id, CSftpFields fields)
{
    const std::string path = Resolve(fields.TakeString());
    const Node* const node = Find(path);
    switch (type) {
    case SftpType::RealPath: {
        CSftpRequest answer(SftpType::Name);
        answer.AddUint32(1).AddString(path).AddString(path).AddUint32(0);
        return Bytes(answer, id);
    }
    case SftpType::Stat: {
        if (node == nullptr) {
            return Missing(id);
        }
        CSftpRequest answer(SftpType::Attrs);
        AddAttributes(answer, *node, node->bytes.size());
        return Bytes(answer, id);
    }
    case SftpType::Open:
        return Open(id, path, fields);
    case SftpType::OpenDir:
        return node != nullptr && node->isDirectory ? OpenHandle(id, path) : Missing(id);
    case SftpType::MkDir:
        if (nodes.count(path) != 0) {
            return Failed(id);
        }
        if (Find(ParentOf(path)) == nullptr) {
            return Missing(id);
        }
        nodes[path].isDirectory = true;
        nodes[path].permissions = fields.TakeAttributes().permissions.value_or(0777);
        return Done(id);
    case SftpType::Remove:
        return Remove(id, path, false);
    case SftpType::RmDir:
        return Remove(id, path, true);
    case SftpType::Rename:
        return Rename(id, path, Resolve(fields.TakeString()), false);
    default:
        return Status(id, 8, "Operation unsupported");
    }
}

std::string CMemorySftpServer::AnswerHandle(SftpType type, uint32_t id, CSftpFields fields)
{
    const std::string name(fields.TakeString());
    const auto found = handles.find(name);
    if (found == handles.end() || found->second.path.empty()) {
        return Failed(id);
    }
    Node& node = nodes[found->second.path];
    switch (type) {
    case SftpType::Close:
        handles.erase(found);
        return Done(id);
    case SftpType::ReadDir:
        return ListSome(id, found->second);
    case SftpType::FStat: {
        CSftpRequest answer(SftpType::Attrs);
        AddAttributes(answer, node, shownSize.value_or(node.bytes.size()));
        return Bytes(answer, id);
    }
    case SftpType::Write: {
        const uint64_t offset = fields.TakeUint64();
        const std::string_view bytes = fields.TakeString();
        node.bytes.resize(std::max<std::size_t>(node.bytes.size(), offset + bytes.size()));
        node.bytes.replace(offset, bytes.size(), bytes);
        return Done(id);
    }
    case SftpType::Read: {
        const uint64_t offset = fields.TakeUint64();
        const std::size_t count = std::min<std::size_t>(fields.TakeUint32(), readAtOnce);
        if (offset >= node.bytes.size()) {
            return Status(id, SftpCode::EndOfFile, "End of file");
        }
        return Bytes(CSftpRequest(SftpType::Data).AddString(node.bytes.substr(offset, count)), id);
    }
    default:
        return Failed(id);
    }
}

std::string CMemorySftpServer::AnswerExtended(uint32_t id, CSftpFields fields)
{
    const std::string name(fields.TakeString());
    const std::string path = Resolve(fields.TakeString());
    if (extensions.count(name) == 0) {
        return Status(id, 8, "Operation unsupported");
    }
    if (name == "posix-rename@openssh.com") {
        return Rename(id, path, Resolve(fields.TakeString()), true);
    }
    CSftpRequest answer(SftpType::ExtendedReply);
    answer.AddUint64(4096).AddUint64(4096).AddUint64(100'000).AddUint64(freeBlocks).AddUint64(freeBlocks);
    for (int left = 6; left > 0; --left) {
        answer.AddUint64(0);
    }
    return Bytes(answer, id);
}

std::string CMemorySftpServer::Open(uint32_t id, const std::string& path, CSftpFields fields)
{
    const uint32_t flags = fields.TakeUint32();
    const SftpAttributes attributes = fields.TakeAttributes();
    const Node* const node = Find(path);
    if (node != nullptr && node->isDirectory) {
        return Failed(id);
    }
    const bool creates = (flags & SftpOpen::Create) != 0;
    if (node == nullptr && (!creates || Find(ParentOf(path)) == nullptr)) {
        return Missing(id);
    }
    if (node == nullptr) {
        nodes[path].permissions = attributes.permissions.value_or(0666);
    }
    if ((flags & SftpOpen::Truncate) != 0) {
        nodes[path].bytes.clear();
    }
    return OpenHandle(id, path);
}

std::string CMemorySftpServer::OpenHandle(uint32_t id, const std::string& path)
{
    const std::string name = "handle " + std::to_string(++lastHandle);
    handles[name].path = path;
    return Bytes(CSftpRequest(SftpType::Handle).AddString(name), id);
}

std::string CMemorySftpServer::ListSome(uint32_t id, Handle& handle)
{
    std::vector<std::string> listed = {".", ".."};
    listed.insert(listed.end(), listedBesides.begin(), listedBesides.end());
    for (const auto& [path, node] : nodes) {
        if (path != "/" && ParentOf(path) == handle.path) {
            listed.push_back(path.substr(path.rfind('/') + 1));
        }
    }
    if (handle.nextName >= listed.size()) {
        return Status(id, SftpCode::EndOfFile, "End of file");
    }
    CSftpRequest answer(SftpType::Name);
    const std::size_t end = std::min(handle.nextName + namesAtOnce, listed.size());
    answer.AddUint32(static_cast<uint32_t>(end - handle.nextName));
    for (; handle.nextName < end; ++handle.nextName) {
        const std::string& name = listed[handle.nextName];
        const auto found = nodes.find((handle.path == "/" ? "" : handle.path) + '/' + name);
        const Node node = found == nodes.end() ? Node() : found->second;
        answer.AddString(name).AddString("-rw-r--r-- 1 a a 0 Jan 1 2024 " + name);
        AddAttributes(answer, node, node.bytes.size());
    }
    return Bytes(answer, id);
}

std::string CMemorySftpServer::Rename(uint32_t id, const std::string& from, const std::string& to,
                                      bool replaces)
{
    const auto moved = nodes.find(from);
    if (moved == nodes.end() || Find(ParentOf(to)) == nullptr) {
        return Missing(id);
    }
    if (nodes.count(to) != 0 && !replaces) {
        return Failed(id);
    }
    Node node = std::move(moved->second);
    nodes.erase(moved);
    nodes[to] = std::move(node);
    return Done(id);
}

std::string CMemorySftpServer::Remove(uint32_t id, const std::string& path, bool isDirectory)
{
    const auto removed = nodes.find(path);
    if (removed == nodes.end()) {
        return Missing(id);
    }
    const bool isEmpty = std::none_of(nodes.begin(), nodes.end(), [&path](const auto& other) {
        return other.first != "/" && ParentOf(other.first) == path;
    });
    if (removed->second.isDirectory != isDirectory || !isEmpty) {
        return Failed(id);
    }
    nodes.erase(removed);
    return Done(id);
}

std::string CMemorySftpServer::Resolve(std::string_view path) const
{
    if (path == ".") {
        return "/home";
    }
    return path.substr(0, 1) == "/" ? std::string(path) : "/home/" + std::string(path);
}

// What a link leads to.
const CMemorySftpServer::Node* CMemorySftpServer::Find(std::string path) const
{
    for (int links = 0; links < 8; ++links) {
        const auto found = nodes.find(path);
        if (found == nodes.end()) {
            return nullptr;
        }
        if (found->second.target.empty()) {
            return &found->second;
        }
        path = found->second.target;
    }
    return nullptr;
}

std::size_t CMemorySftpStream::Write(std::string_view bytes)
{
    if (isClosed || IsCut()) {
        throw EngineStatus::ConnectionReset;
    }
    const std::size_t count = std::min(bytes.size(), atOnce);
    server.Take(bytes.substr(0, count));
    return count;
}

std::size_t CMemorySftpStream::Read(char* bytes, std::size_t size)
{
    if (isClosed || IsCut()) {
        throw EngineStatus::ConnectionReset;
    }
    const std::size_t count = std::min({server.outgoing.size(), size, atOnce});
    std::memcpy(bytes, server.outgoing.data(), count);
    server.outgoing.erase(0, count);
    return count;
}

void CMemorySftpStream::Wait()
{
    throw EngineStatus::TimedOut;
}
