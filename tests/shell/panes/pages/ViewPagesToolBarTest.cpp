#include "shell/panes/pages/ViewPagesToolBar.h"

#include <QLabel>
#include <QMenu>
#include <gtest/gtest.h>

#include "PagesWindow.h"

TEST(ViewPagesToolBar, TheMenusAreInTheOrderOfTheFilesAndHaveTheirLabels)
{
    CProjectFixture fixture;
    fixture.scratch.Write(QStringLiteral("program/Templates/a.xml"),
                          "<template name=\"Zebra\" folder=\"a\" group=\"g\">"
                          "<page file=\"index.html\" multipage=\"1\"/></template>");
    fixture.scratch.Write(QStringLiteral("program/Templates/b.xml"),
                          "<template name=\"Ant\" folder=\"a\" group=\"g\">"
                          "<page file=\"index.html\" multipage=\"1\"/></template>");
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "");
    fixture.scratch.Write(QStringLiteral("program/Styles/a.xml"),
                          "<style css=\"style.css\" name=\"Zinc\" folder=\"a\" group=\"g\"/>");
    fixture.scratch.Write(QStringLiteral("program/Styles/b.xml"),
                          "<style css=\"style.css\" name=\"Amber\" folder=\"a\" group=\"g\"/>");
    fixture.NewProject();
    fixture.GetRoot().SetTemplate(QStringLiteral("a.xml"));
    fixture.GetRoot().SetStyle(GetStylesOfCurrentLayout(fixture.GetRoot()).at(0));
    CViewPagesToolBar toolBar({});
    toolBar.UpdateLayoutMenu(&fixture.GetRoot());
    toolBar.UpdateStyleMenu(&fixture.GetRoot());
    EXPECT_EQ(Entries(toolBar.GetLayoutMenu()),
              QStringList({QStringLiteral("*Zebra 5000"), QStringLiteral("Ant 5001")}));
    EXPECT_EQ(Entries(toolBar.GetStyleMenu()),
              QStringList({QStringLiteral("*Zinc 5200"), QStringLiteral("Amber 5201")}));
    QStringList labels;
    for (const char* button : {"LayoutButton", "StyleButton"}) {
        for (const QLabel* label : toolBar.findChildren<QLabel*>()) {
            if (label->buddy() && label->buddy()->objectName() == QLatin1String(button)) {
                labels += label->text();
            }
        }
    }
    EXPECT_EQ(labels, QStringList({QStringLiteral(" Layout: "), QStringLiteral(" Style: ")}));
}
