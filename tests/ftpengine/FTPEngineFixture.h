#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include <gtest/gtest.h>

#include "ResourceGuard.h"
#include "ftpengine/FTPEngine.h"
#include "support/ScriptedServer.h"

// Short, so that a test of a silent server takes little time, and long enough for a busy machine.
inline FTPTimeouts ShortTimeouts()
{
    using std::chrono::milliseconds;
    return {.send = milliseconds(2000),
            .reply = milliseconds(500),
            .greeting = milliseconds(500),
            .preliminary = milliseconds(60000),
            .stopWorker = milliseconds(1000),
            .dataStall = milliseconds(300),
            .afterData = milliseconds(500),
            .lastWords = milliseconds(2000),
            .lookUp = milliseconds(60000),
            .connect = milliseconds(20000)};
}

// For tests in which nothing is silent: only a hang would come to these ends.
inline FTPTimeouts PatientTimeouts()
{
    using std::chrono::seconds;
    FTPTimeouts timeouts = ShortTimeouts();
    timeouts.send = seconds(60);
    timeouts.reply = seconds(60);
    timeouts.greeting = seconds(60);
    timeouts.afterData = seconds(60);
    timeouts.stopWorker = seconds(60);
    timeouts.dataStall = seconds(60);
    return timeouts;
}

// Keeps the messages of tasks.
class CRecordingFTPTarget final : public CFTPTarget {
public:
    void Post(FTPMessage message) override;

    // Waits until so many finished messages have come.
    void WaitForFinished(std::size_t count = 1);
    // Waits until so many messages of any kind have come.
    void WaitForMessages(std::size_t count);
    // Names and chief parameters, as "808 title", in their order; without progress.
    std::vector<std::string> GetMessages();
    std::vector<FTP_UPLOAD_PROGRESS> GetProgress();
    std::vector<CTaskResult> GetResults();
    // Of the last listing.
    std::optional<CFTPDirectoryContent> GetContent();

    // Called for each message on the sender's thread, without a lock. To be set before the task is given.
    std::function<void(const FTPMessage&)> onMessage;

private:
    struct Recorder;

    std::mutex lock;
    std::condition_variable arrived;
    std::vector<std::string> messages;
    std::vector<FTP_UPLOAD_PROGRESS> progress;
    std::vector<CTaskResult> results;
    std::optional<CFTPDirectoryContent> content;
};

// Base of the tests of tasks: a server that isn't started yet, and a target.
class CFTPEngineFixture : public testing::Test {
protected:
    const CResourceGuard guard; // the first, so that it counts last
    CScriptedServer server;
    const std::shared_ptr<CRecordingFTPTarget> target = std::make_shared<CRecordingFTPTarget>();

    using Commands = std::vector<std::string>;
};

std::ostream& operator<<(std::ostream& out, const CTaskResult& result);
