#include "shell/frame/EditingDesk.h"

#include <QDialog>
#include <gtest/gtest.h>

#include "editing/GalleryActs.h"
#include "editing/PictureActs.h"
#include "support/ProjectFixture.h"

namespace {

class CView final : public CGalleryProjectConsumer {
public:
    CView(QString name, QStringList& heard) : name(std::move(name)), heard(heard) {}

    void UpdateView(const ViewUpdate& update, CGalleryProject&) override
    {
        heard += name + (update.edited ? QLatin1Char(' ') + update.edited->name : QString());
    }

private:
    const QString name;
    QStringList& heard;
};

class EditingDesk : public testing::Test {
protected:
    EditingDesk()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "<html></html>");
        fixture.WriteStyle(QStringLiteral("plain"));
        fixture.NewProject();
        desk = std::make_unique<CEditingDesk>(
            fixture.GetProject(),
            CEditingDesk::Listener{.changed = [this] { heard += QStringLiteral("save"); },
                                   .edited =
                                       [this](const Edited&) {
                                           heard += QStringLiteral("frame");
                                       }});
        desk->AddView(first);
        desk->AddView(second);
    }

    CProjectFixture fixture;
    QStringList heard;
    CView first{QStringLiteral("first"), heard};
    CView second{QStringLiteral("second"), heard};
    std::unique_ptr<CEditingDesk> desk;
};

} // namespace

TEST_F(EditingDesk, AllHearOfAnActInTheirOrder)
{
    EXPECT_TRUE(desk->Do(AddGalleryBelow(0)));
    const QStringList order = {QStringLiteral("save"), QStringLiteral("first Add Gallery"),
                               QStringLiteral("second Add Gallery"), QStringLiteral("frame")};
    EXPECT_EQ(heard, order);
    heard.clear();
    desk->GetHistory().GetStack().undo();
    EXPECT_EQ(heard, order);
}

TEST_F(EditingDesk, WhatChangesNothingIsNotTold)
{
    EXPECT_FALSE(desk->Do(TurnPictures(0, {7}, true)));
    desk->ChooseGallery(99);
    EXPECT_TRUE(heard.isEmpty());
}

TEST_F(EditingDesk, NothingIsDoneBehindADialog)
{
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    EXPECT_FALSE(desk->Do(AddGalleryBelow(0)));
    desk->ChooseGallery(0);
    EXPECT_TRUE(heard.isEmpty());
    EXPECT_EQ(fixture.GetProject().GetGalleries().size(), 1U);
    dialog.close();
    EXPECT_TRUE(desk->Do(AddGalleryBelow(0)));
}

TEST_F(EditingDesk, AnotherGalleryIsNoStep)
{
    desk->Do(AddGalleryBelow(0));
    heard.clear();
    desk->ChooseGallery(1);
    EXPECT_EQ(heard,
              QStringList({QStringLiteral("save"), QStringLiteral("first"), QStringLiteral("second")}));
    EXPECT_EQ(desk->GetHistory().GetStack().count(), 1);
}

TEST_F(EditingDesk, TheStepsEndWithTheProject)
{
    desk->Do(AddGalleryBelow(0));
    desk->BeginAnew();
    EXPECT_FALSE(desk->GetHistory().GetStack().canUndo());
}
