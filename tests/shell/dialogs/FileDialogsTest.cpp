#include "shell/dialogs/FileDialogs.h"

#include <gtest/gtest.h>

TEST(GallerySaveDialog, AsksForProjectsAndBeforeItOverwritesOne)
{
    using Purpose = CGallerySaveDialog::Purpose;
    for (const Purpose purpose : {Purpose::Save, Purpose::Open}) {
        const CGallerySaveDialog dialog(purpose, QStringLiteral("/Trip.gallery"), nullptr);
        EXPECT_EQ(dialog.nameFilters(), QStringList(QStringLiteral("Image galleries (*.gallery)")));
        EXPECT_EQ(dialog.defaultSuffix(), QStringLiteral("gallery"));
        EXPECT_EQ(dialog.acceptMode(),
                  purpose == Purpose::Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
        EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
    }
}
