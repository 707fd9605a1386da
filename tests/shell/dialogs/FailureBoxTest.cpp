#include "shell/dialogs/FailureBox.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <gtest/gtest.h>

#include "common/Exceptions.h"
#include "shell_support/DialogTools.h"

namespace {

CGenericException Failure()
{
    return CGenericException(QStringLiteral("The file <b>x</b> can't be read."),
                             QStringLiteral("It is empty."), QStringLiteral("Choose another."));
}

} // namespace

TEST(FailureBox, TheLastResortNamesWhatWhyAndWhatToDo)
{
    EXPECT_EQ(
        LastResortText(Failure()),
        QStringLiteral("what:The file <b>x</b> can't be read.\nwhy:It is empty.\ntodo:Choose another."));
}

TEST(FailureBox, AFailureShowsItsThreeTextsAsTheyStand)
{
    QString shown;
    CModalAnswer answer([&](QWidget& dialog) {
        auto& box = static_cast<QMessageBox&>(dialog);
        shown = box.text() + QLatin1Char('|') + box.informativeText();
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        box.accept();
    });
    ShowFailure(Failure(), nullptr);
    EXPECT_EQ(shown, QStringLiteral("The file <b>x</b> can't be read.|It is empty.\n\nChoose another."));
}

TEST(FailureBox, AnUnsavedProjectIsAPersonsChoice)
{
    const struct {
        const char* button;
        UnsavedChoice choice;
    } rows[] = {
        {"Save &as...", UnsavedChoice::SaveElsewhere},
        {"&Close without saving", UnsavedChoice::CloseAnyway},
        {"Cancel", UnsavedChoice::Stay},
    };
    for (const auto& row : rows) {
        CModalAnswer answer([&](QWidget& dialog) {
            for (QAbstractButton* button : static_cast<QMessageBox&>(dialog).buttons()) {
                if (button->text().remove(QLatin1Char('&')) ==
                    QString::fromLatin1(row.button).remove(QLatin1Char('&'))) {
                    button->click();
                }
            }
        });
        EXPECT_EQ(AskAboutUnsaved(Failure(), nullptr), row.choice) << row.button;
    }
}
