#pragma once

#include <functional>
#include <memory>

#include <QSize>

#include "common/Settings.h"
#include "common/TempFolder.h"
#include "document/project/GalleryProject.h"
#include "support/ScratchFolder.h"

// A program folder and a project in scratch folders, with real layouts and real pictures. For tests above the
// document.
class CProjectFixture {
public:
    CProjectFixture();

    const CScratchFolder scratch;
    const std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;

    // Writes Templates/NAME.xml of the program with these pages, each a file of Templates/NAME, which the
    // caller writes by WritePage. pages: as the elements stand in the file.
    void WriteLayout(const QString& name, const QByteArray& pages) const;
    void WritePage(const QString& layout, const QString& file, const QByteArray& text) const;
    // A style of the program in Styles/NAME, with one file style.css, and Styles/Common with base.css.
    void WriteStyle(const QString& name) const;

    // A JPEG or PNG of one colour in scratch/photos; returns its path.
    QString WritePicture(const QString& name, QSize size = QSize(40, 30), uint32_t rgb = 0x336699) const;

    CProjectEnvironment GetEnvironment();
    // A new project over what has been written so far; gallery 0 is its root, with the page of its layout
    // set.
    CGalleryProject& NewProject();
    CGalleryProject& OpenProject(const QString& path);
    CGalleryProject& OpenProject(const QString& path, const CProjectEnvironment& environment);
    CGalleryProject& GetProject() { return *project; }
    CGallery& GetRoot();

private:
    std::unique_ptr<CGalleryProject> project;
};

// Does it to the file, and sets its times back to what they were.
void KeepingTimes(const QString& path, const std::function<void()>& change);
