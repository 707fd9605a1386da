#include "ftpengine/sftp/SftpChannel.h"

#include "ftpengine/messages/EngineStatus.h"
#include "support/MemorySftpServer.h"

namespace {

// Hands out what a test has written down, whatever it is asked for.
class CSpeakingStream final : public CSftpStream {
public:
    explicit CSpeakingStream(const char* hex) : left(QByteArray::fromHex(hex).toStdString()) {}

    std::size_t Write(std::string_view bytes) override { return bytes.size(); }
    std::size_t Read(char* bytes, std::size_t size) override
    {
        const std::size_t count = left.copy(bytes, size);
        left.erase(0, count);
        return count;
    }
    void Wait() override { throw EngineStatus::TimedOut; }
    void Close() override {}

private:
    std::string left;
};

template <class Action>
int NumberThrownBy(const Action& action)
{
    try {
        action();
    } catch (int number) {
        return number;
    }
    return 0;
}

} // namespace

TEST(SftpChannel, StartsWithTheVersionAndTheExtensions)
{
    const struct {
        const char* bytes;
        int thrown;
    } rows[] = {
        {"00000005 02 00000003", 0},
        {"00000005 02 00000006", 0}, // says what it could do, and speaks ours
        {"0000000f 02 00000003 00000001 61 00000001 31", 0},
        {"00000005 02 00000002", 10043},
        {"00000005 65 00000003", EngineStatus::UnknownReply},
        {"00000000", EngineStatus::UnknownReply},
        {"00000001 02", EngineStatus::UnknownReply},
        {"00000007 02 00000003 0000", EngineStatus::UnknownReply},
        {"7fffffff 02", EngineStatus::MessageTooLong},
        {"48656c6c 6f", EngineStatus::MessageTooLong}, // "Hello": a login script that talks
        {"00000005 02 0000", EngineStatus::TimedOut},
        {"", EngineStatus::TimedOut},
    };
    for (const auto& row : rows) {
        CSpeakingStream stream(row.bytes);
        CSftpChannel channel(stream);
        EXPECT_EQ(NumberThrownBy([&] { channel.Start(); }), row.thrown) << row.bytes;
        EXPECT_EQ(channel.Offers("a"), std::string(row.bytes).find("61 0000") != std::string::npos);
    }
}

TEST(SftpChannel, AnAnswerToNothingEndsIt)
{
    // After the version an answer to request 9.
    CSpeakingStream stream("00000005 02 00000003 00000009 65 00000009 00000000");
    CSftpChannel channel(stream);
    EXPECT_EQ(NumberThrownBy([&] {
                  channel.Start();
                  channel.Ask(CSftpRequest(SftpType::RealPath).AddString("."));
              }),
              EngineStatus::UnknownReply);
}

TEST(SftpChannel, FindsEachAnswerWhateverTheirOrderAndPieces)
{
    for (const std::size_t atOnce : {1u, 7u, 100'000u}) {
        CMemorySftpServer server;
        server.answersLastFirst = true;
        for (int i = 0; i < 100; ++i) {
            server.nodes["/home/" + std::to_string(i)].bytes = std::string(static_cast<std::size_t>(i), 'x');
        }
        CMemorySftpStream stream(server);
        stream.atOnce = atOnce;
        CSftpChannel channel(stream);
        channel.Start();
        EXPECT_TRUE(channel.Offers("posix-rename@openssh.com"));
        std::vector<uint32_t> asked;
        for (int i = 0; i < 100; ++i) {
            asked.push_back(channel.Post(CSftpRequest(SftpType::Stat).AddString(std::to_string(i))));
        }
        for (std::size_t i = 0; i < asked.size(); ++i) {
            const SftpAnswer answer = channel.Await(asked[i]);
            ASSERT_EQ(answer.type, SftpType::Attrs);
            EXPECT_EQ(CSftpFields(answer.fields).TakeAttributes().size, i);
        }
    }
}
