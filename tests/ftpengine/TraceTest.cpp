#include "ftpengine/Trace.h"

#include <gmock/gmock.h>

#include "TraceRecorder.h"
#include "support/ScratchFolder.h"

namespace {

QByteArray Utf16(const QString& text)
{
    return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
}

class EngineTrace : public testing::Test {
protected:
    const CScratchFolder scratch;
    const std::unique_ptr<CSettingsStore> settings =
        CreateIniSettings(scratch.Path(QStringLiteral("user")), scratch.Path(QStringLiteral("machine")));

    void NameFile(const QString& path)
    {
        settings->Write(CSettingsStore::Scope::User, QStringLiteral("NimbleXfer/Trace"),
                        QStringLiteral("File"), path);
    }
};

} // namespace

TEST_F(EngineTrace, IsOffUntilTheSettingIsThere)
{
    CTrace trace(*settings);
    testing::internal::CaptureStderr();
    trace.Trace(QStringLiteral("unseen"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    NameFile({});
    testing::internal::CaptureStderr();
    trace.Trace(QStringLiteral("seen"));
    trace.Trace(QStringLiteral("with its end\n"));
    const std::string seen = testing::internal::GetCapturedStderr();
    EXPECT_THAT(seen, testing::MatchesRegex("[0-9]+\tseen\r\n[0-9]+\twith its end\n"));
}

TEST_F(EngineTrace, WritesAFileAnewInUtf16WithoutTheTime)
{
    const QString path = scratch.Write(QStringLiteral("trace.txt"), "old");
    NameFile(path);
    CTrace trace(*settings);
    testing::internal::CaptureStderr();
    trace.Trace(QStringLiteral("\u00e4"));
    trace.Trace(QStringLiteral("b"));
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(scratch.Read(QStringLiteral("trace.txt")), Utf16(QStringLiteral("\u00e4\r\nb\r\n")));
}

TEST_F(EngineTrace, AKeyThatNamesNoFileTurnsItOnAsWell)
{
    settings->Write(CSettingsStore::Scope::User, QStringLiteral("NimbleXfer/Trace"), QStringLiteral("Other"),
                    QStringLiteral("1"));
    CTrace trace(*settings);
    testing::internal::CaptureStderr();
    trace.Trace(QStringLiteral("seen"));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::EndsWith("\tseen\r\n"));
}

TEST_F(EngineTrace, AFileThatCannotBeWrittenIsIgnored)
{
    NameFile(scratch.Path(QStringLiteral("no/such/folder")));
    CTrace trace(*settings);
    testing::internal::CaptureStderr();
    trace.Trace(QStringLiteral("a"));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::EndsWith("\ta\r\n"));
}

TEST_F(EngineTrace, LinesAreWhatTheMacroWasGiven)
{
    CTraceRecorder recorder;
    EXPECT_THROW(ThrowTraced("Send, WSASend throws: ", 10054), int);
    EXPECT_THROW(ThrowTracedLiterally("Send, WSAWaitForMultipleEvents aborted", 995), int);
    {
        const TraceScope scope(QStringLiteral("A::B"));
    }
    const std::vector<QString> expected = {QStringLiteral("\"Send, WSASend throws: \"10054"),
                                           QStringLiteral("_T(\"Send, WSAWaitForMultipleEvents aborted\")"),
                                           QStringLiteral("A::B entering"), QStringLiteral("A::B exiting")};
    EXPECT_EQ(recorder.GetLines(), expected);
}
