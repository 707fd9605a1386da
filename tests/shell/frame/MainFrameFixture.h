#pragma once

#include <memory>

#include <QMenu>
#include <QMenuBar>
#include <gtest/gtest.h>

#include "common/FileSystem.h"
#include "shell/frame/MainFrame.h"
#include "shell/frame/ProjectPath.h"
#include "support/ProjectFixture.h"

// A main window over a project of the test, with two layouts and two styles.
class CMainFrameFixture : public testing::Test {
protected:
    CProjectFixture fixture;
    std::unique_ptr<CMainFrame> frame;

    CMainFrameFixture()
    {
        for (const char* layout : {"one", "two"}) {
            const QString name = QString::fromLatin1(layout);
            fixture.WriteLayout(name, "<page file=\"index.html\" multipage=\"1\"/>");
            fixture.WritePage(name, QStringLiteral("index.html"),
                              "<html><head></head><body>page</body></html>");
        }
        fixture.WriteStyle(QStringLiteral("plain"));
        fixture.WriteStyle(QStringLiteral("rich"));
    }

    QString Path(const char* name) { return fixture.scratch.Path(QString::fromUtf8(name)); }

    void Start(const QString& path)
    {
        frame = std::make_unique<CMainFrame>(fixture.GetEnvironment(), path);
        frame->Start();
    }

    QStringList RecentNames() const
    {
        QStringList names;
        for (const QString& path : frame->GetProjects().GetRecentProjects().GetPaths()) {
            names += ProjectNameOf(path);
        }
        return names;
    }

    // From the first entry on, which has the number 0 in the list.
    QMenu& FileMenu() { return *frame->menuBar()->actions().at(0)->menu(); }
};
