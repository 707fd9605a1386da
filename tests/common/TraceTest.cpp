#include "common/Trace.h"

#include <gmock/gmock.h>

#include "support/ScratchFolder.h"
#include "support/TraceRecorder.h"

namespace {

QByteArray Utf16(const QString& text)
{
    return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
}

class ProgramTrace : public testing::Test {
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

TEST_F(ProgramTrace, IsOffUntilTheSettingIsThere)
{
    CTrace trace(*settings, std::chrono::milliseconds(0));
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

TEST_F(ProgramTrace, TheSettingIsNotLookedForWithEachLine)
{
    CTrace trace(*settings, std::chrono::hours(1));
    testing::internal::CaptureStderr();
    trace.Trace(QStringLiteral("unseen"));
    NameFile({});
    trace.Trace(QStringLiteral("unseen as well"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ProgramTrace, WritesAFileAnewInUtf16WithoutTheTime)
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

TEST_F(ProgramTrace, AKeyThatNamesNoFileTurnsItOnAsWell)
{
    settings->Write(CSettingsStore::Scope::User, QStringLiteral("NimbleXfer/Trace"), QStringLiteral("Other"),
                    QStringLiteral("1"));
    CTrace trace(*settings);
    testing::internal::CaptureStderr();
    trace.Trace(QStringLiteral("seen"));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::EndsWith("\tseen\r\n"));
}

TEST_F(ProgramTrace, AFileThatCannotBeWrittenIsIgnored)
{
    NameFile(scratch.Path(QStringLiteral("no/such/folder")));
    CTrace trace(*settings);
    testing::internal::CaptureStderr();
    trace.Trace(QStringLiteral("a"));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::EndsWith("\ta\r\n"));
}

TEST(TraceScope, WritesALineAtItsBeginAndAtItsEnd)
{
    CTraceRecorder recorder;
    {
        const TraceScope scope(QStringLiteral("A::B"));
        Trace(QStringLiteral("inside"));
    }
    const std::vector<QString> expected = {QStringLiteral("A::B entering"), QStringLiteral("inside"),
                                           QStringLiteral("A::B exiting")};
    EXPECT_EQ(recorder.GetLines(), expected);
}
