#include "shell/look/Panel.h"

#include <QLabel>
#include <QToolBar>
#include <gtest/gtest.h>

namespace {

class CTestPanel final : public CPanel {
public:
    using CPanel::SetClient;
    using CPanel::SetToolBar;
};

} // namespace

TEST(Panel, TheToolBarIsOnTopAndTheClientTakesTheRest)
{
    CTestPanel panel;
    auto* const client = new QWidget(&panel);
    auto* const toolBar = new QToolBar(&panel);
    toolBar->addAction(QStringLiteral("x"));
    panel.SetClient(client);
    panel.SetToolBar(toolBar);
    panel.resize(400, 300);
    panel.show();
    EXPECT_EQ(toolBar->geometry(), QRect(0, 0, 400, toolBar->sizeHint().height()));
    EXPECT_EQ(client->geometry(), QRect(0, toolBar->height(), 400, 300 - toolBar->height()));
    panel.resize(500, 200);
    EXPECT_EQ(client->geometry(), QRect(0, toolBar->height(), 500, 200 - toolBar->height()));
}

TEST(Panel, ATitleThatIsTooWideIsCut)
{
    const struct {
        const char* title;
        int width;
        const char* expected;
    } rows[] = {
        {"Holidays", 80, "Holidays"},
        {"Holidays", 79, "Holi..."},
        {"Holidays", 30, "..."},
        {"Holidays", 0, "..."},
        {"", 0, ""},
        {"Holidays", -5, "..."},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CutTitle(QString::fromLatin1(row.title), row.width, 10), QString::fromLatin1(row.expected))
            << row.width;
    }
    EXPECT_EQ(CutTitle(QStringLiteral("Holidays"), 2, 0), QStringLiteral("..."));
}

TEST(Panel, ATitleFitsItselfToItsPlace)
{
    CPanelTitle title;
    title.SetTitle(QStringLiteral("A long name of a project for once"));
    title.resize(80, 24);
    title.show();
    EXPECT_TRUE(title.text().endsWith(QStringLiteral("..."))) << qPrintable(title.text());
    EXPECT_EQ(title.toolTip(), title.GetTitle());
    title.resize(600, 24);
    EXPECT_EQ(title.text(), title.GetTitle());
    EXPECT_EQ(title.toolTip(), QString());
    EXPECT_EQ(title.font().pixelSize(), 12);
    EXPECT_EQ(title.font().families().value(0), QStringLiteral("Tahoma"));
    EXPECT_EQ(title.font().weight(), QFont::DemiBold);
}
