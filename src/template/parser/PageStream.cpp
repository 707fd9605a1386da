#include "template/parser/PageStream.h"

#include <string>

#include <QFileInfo>

#include "common/Text.h"

std::ifstream OpenPageFile(const QString& path)
{
    std::ifstream stream;
    if (QFileInfo(path).isFile()) {
        stream.open(Narrow(path), std::ios::in | std::ios::binary);
    } else {
        stream.setstate(std::ios::failbit);
    }
    return stream;
}

// The buffer is read directly: the stream's own get() would make a sentry object for each byte. A file buffer
// throws when the system fails to read.
std::optional<char> ReadPageByte(std::istream& stream)
{
    using Traits = std::istream::traits_type;
    try {
        const Traits::int_type byte = stream.rdbuf()->sbumpc();
        if (!Traits::eq_int_type(byte, Traits::eof())) {
            return Traits::to_char_type(byte);
        }
        stream.setstate(std::ios::eofbit);
    } catch (const std::ios_base::failure&) {
        stream.setstate(std::ios::badbit);
    }
    return std::nullopt;
}

std::optional<char> PeekPageByte(std::istream& stream)
{
    using Traits = std::istream::traits_type;
    try {
        const Traits::int_type byte = stream.rdbuf()->sgetc();
        if (!Traits::eq_int_type(byte, Traits::eof())) {
            return Traits::to_char_type(byte);
        }
    } catch (const std::ios_base::failure&) {
        stream.setstate(std::ios::badbit);
    }
    return std::nullopt;
}

void UnreadPageByte(std::istream& stream)
{
    stream.rdbuf()->sungetc();
}

// Asked of the buffer: the stream's own tellg() answers -1 once the end was met.
uint64_t GetPagePosition(std::istream& stream)
{
    const std::streamoff position = stream.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in);
    return position < 0 ? 0 : static_cast<uint64_t>(position);
}
