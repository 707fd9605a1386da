#include "shell/frame/OpenElsewhereBox.h"

#include <QMessageBox>
#include <gtest/gtest.h>

#include "shell_support/DialogTools.h"
#include "support/ScratchFolder.h"

namespace {

using State = CProjectLock::State;

class OpenElsewhereBox : public testing::Test {
protected:
    const CScratchFolder scratch;
    const QString path = scratch.Path(QStringLiteral("My trip.gallery"));

    void WriteLockOfAttic() const
    {
        scratch.Write(QStringLiteral(".My trip.gallery.lock"), "1\nvistorama\nattic\n\n\n");
    }
};

} // namespace

TEST_F(OpenElsewhereBox, AsksNothingForAProjectThatIsFree)
{
    const auto lock = AcquireProjectLock(path, nullptr);
    ASSERT_TRUE(lock.has_value());
    EXPECT_EQ(lock->GetState(), State::Held);
}

TEST_F(OpenElsewhereBox, OffersToOpenAsReadOnly)
{
    const CProjectLock elsewhere(path);
    CMessageAnswer answer(QStringLiteral("Open Read-only"));
    const auto lock = AcquireProjectLock(path, nullptr);
    EXPECT_EQ(answer.GetText(), QStringLiteral("The project \"My trip\" is open in another window."));
    ASSERT_TRUE(lock.has_value());
    EXPECT_EQ(lock->GetState(), State::OpenElsewhere);
}

TEST_F(OpenElsewhereBox, CanBeLeft)
{
    const CProjectLock elsewhere(path);
    CModalAnswer answer([](QWidget& box) {
        KeepPictures(box, QStringLiteral("open-elsewhere"));
        static_cast<QDialog&>(box).reject();
    });
    EXPECT_FALSE(AcquireProjectLock(path, nullptr).has_value());
    EXPECT_TRUE(answer.WasAsked());
}

TEST_F(OpenElsewhereBox, ALockOfAnotherComputerCanBeSeized)
{
    WriteLockOfAttic();
    CMessageAnswer answer(QStringLiteral("Open Anyway"));
    const auto lock = AcquireProjectLock(path, nullptr);
    EXPECT_EQ(answer.GetText(), QStringLiteral("The project \"My trip\" is open on the computer \"attic\"."));
    ASSERT_TRUE(lock.has_value());
    EXPECT_EQ(lock->GetState(), State::Held);
}

// Who has it open here can close it.
TEST_F(OpenElsewhereBox, ALockOfThisComputerCannotBeSeized)
{
    const CProjectLock elsewhere(path);
    CModalAnswer answer([](QWidget& box) {
        EXPECT_EQ(static_cast<QMessageBox&>(box).buttons().size(), 2);
        static_cast<QDialog&>(box).reject();
    });
    AcquireProjectLock(path, nullptr);
    EXPECT_TRUE(answer.WasAsked());
}
