#include "FTPEngineFixture.h"

#include <ostream>

#include "common/Text.h"

namespace {

constexpr auto hang = std::chrono::seconds(60);

std::string Hex(int number)
{
    return Narrow(QString::number(number, 16));
}

} // namespace

struct CRecordingFTPTarget::Recorder {
    CRecordingFTPTarget& target;

    template <class Message>
    void operator()(const Message& message) const
    {
        std::string line = Hex(Message::Number);
        if constexpr (requires { message.localPath; }) {
            line += ' ' + Narrow(message.localPath.section(QLatin1Char('/'), -1));
        }
        if constexpr (requires { message.title; }) {
            line += ' ' + Narrow(message.title);
        }
        if constexpr (requires { message.result; }) {
            target.results.push_back(message.result);
        }
        if constexpr (requires { message.content; }) {
            target.content = message.content;
        }
        target.messages.push_back(line);
    }
    void operator()(const FTP_UPLOAD_PROGRESS& message) const { target.progress.push_back(message); }
};

void CRecordingFTPTarget::Post(FTPMessage message)
{
    if (onMessage) {
        onMessage(message);
    }
    const std::lock_guard guard(lock);
    std::visit(Recorder{*this}, message);
    arrived.notify_all();
}

void CRecordingFTPTarget::WaitForFinished(std::size_t count)
{
    std::unique_lock guard(lock);
    ASSERT_TRUE(arrived.wait_for(guard, hang, [&] { return results.size() >= count; }));
}

void CRecordingFTPTarget::WaitForMessages(std::size_t count)
{
    std::unique_lock guard(lock);
    ASSERT_TRUE(arrived.wait_for(guard, hang, [&] { return messages.size() >= count; }));
}

std::vector<std::string> CRecordingFTPTarget::GetMessages()
{
    const std::lock_guard guard(lock);
    return messages;
}

std::vector<FTP_UPLOAD_PROGRESS> CRecordingFTPTarget::GetProgress()
{
    const std::lock_guard guard(lock);
    return progress;
}

std::vector<CTaskResult> CRecordingFTPTarget::GetResults()
{
    const std::lock_guard guard(lock);
    return results;
}

std::optional<CFTPDirectoryContent> CRecordingFTPTarget::GetContent()
{
    const std::lock_guard guard(lock);
    return content;
}

std::ostream& operator<<(std::ostream& out, const CTaskResult& result)
{
    out << "status " << result.status << ", reply " << result.reply.code << " " << Narrow(result.reply.text)
        << ", transcript";
    for (const QString& line : result.transcript) {
        out << " [" << Narrow(line) << "]";
    }
    return out;
}
