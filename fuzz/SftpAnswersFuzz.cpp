#include <QBuffer>

#include "Check.h"
#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/session/SftpSession.h"

namespace {

// A server that says these bytes whatever it is asked, and then nothing any more.
class CSpeakingStream final : public CSftpStream {
public:
    explicit CSpeakingStream(std::string_view bytes) : left(bytes) {}

    std::size_t Write(std::string_view bytes) override { return bytes.size(); }
    std::size_t Read(char* bytes, std::size_t size) override
    {
        const std::size_t count = left.copy(bytes, size);
        left.remove_prefix(count);
        return count;
    }
    void Wait() override { throw 10060; }
    void Close() override {}

private:
    std::string_view left;
};

} // namespace

// What a server of SFTP answers: every operation ends in a result, a refusal or a number.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const std::string_view answers(reinterpret_cast<const char*>(bytes), size);
    using Operation = void (*)(CRemoteSession & session);
    const Operation operations[] = {
        [](CRemoteSession& session) {
            for (const RemoteEntry& entry : session.List({})) {
                Check(!entry.name.isEmpty() && !entry.name.contains(QLatin1Char('/')),
                      "a listed name is that of an entry");
            }
        },
        [](CRemoteSession& session) { session.Read(QStringLiteral("a"), 1000); },
        [](CRemoteSession& session) { session.GetSize(QStringLiteral("a")); },
        [](CRemoteSession& session) { session.MakeDirectory(QStringLiteral("a")); },
        [](CRemoteSession& session) { session.Rename(QStringLiteral("a"), QStringLiteral("b")); },
        [](CRemoteSession& session) {
            QByteArray content(100'000, 'x');
            QBuffer source(&content);
            source.open(QIODevice::ReadOnly);
            session.Send(source, QStringLiteral("a"), {});
        },
    };
    for (const Operation operation : operations) {
        SessionLog log;
        try {
            CSftpSession session(std::make_unique<CSpeakingStream>(answers), {}, log);
            operation(session);
        } catch (const FTPReply& reply) {
            Check(reply.text.endsWith(QStringLiteral("\r\n")) && reply.text.count(QLatin1Char('\n')) == 1,
                  "a refusal is one line");
        } catch (int number) {
            Check(number != 0, "a failure has a number");
        }
    }
    return 0;
}
