#include "support/ProjectFixture.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QFile>
#include <gtest/gtest.h>

#include "common/FileSystem.h"
#include "document/galleries/Gallery.h"
#include "imaging/Image.h"

CProjectFixture::CProjectFixture()
    : settings(CreateIniSettings(scratch.Path(QStringLiteral("settings")),
                                 scratch.Path(QStringLiteral("machine")))),
      tempFolder(scratch.Path())
{
    MakeDirectoryPath(scratch.Path(QStringLiteral("photos")));
}

void CProjectFixture::WriteLayout(const QString& name, const QByteArray& pages) const
{
    const QByteArray narrowName = name.toUtf8();
    scratch.Write(QStringLiteral("program/Templates/%1.xml").arg(name),
                  "<template name=\"" + narrowName + "\" folder=\"" + narrowName + "\" group=\"standard\">" +
                      pages + "</template>");
}

void CProjectFixture::WritePage(const QString& layout, const QString& file, const QByteArray& text) const
{
    scratch.Write(QStringLiteral("program/Templates/%1/%2").arg(layout, file), text);
}

void CProjectFixture::WriteStyle(const QString& name) const
{
    const QByteArray narrowName = name.toUtf8();
    scratch.Write(QStringLiteral("program/Styles/%1.xml").arg(name),
                  "<style css=\"style.css\" name=\"" + narrowName + "\" folder=\"" + narrowName +
                      "\" group=\"standard\"/>");
    scratch.Write(QStringLiteral("program/Styles/%1/style.css").arg(name), "body {}");
    scratch.Write(QStringLiteral("program/Styles/Common/base.css"), "a {}");
}

QString CProjectFixture::WritePicture(const QString& name, QSize size, uint32_t rgb) const
{
    QByteArray bytes;
    for (int i = 0; i < size.width() * size.height(); ++i) {
        bytes += static_cast<char>(rgb >> 16 & 0xff);
        bytes += static_cast<char>(rgb >> 8 & 0xff);
        bytes += static_cast<char>(rgb & 0xff);
        bytes += '\xff';
    }
    const QString path = scratch.Path(QStringLiteral("photos/") + name);
    const bool isPng = name.endsWith(QStringLiteral(".png"), Qt::CaseInsensitive);
    const ImageSaveResult result =
        CImage::FromRgba(size, bytes)
            .Save(path, {isPng ? ImageEncoding::Format::Png : ImageEncoding::Format::Jpeg, 95});
    EXPECT_EQ(result.status, ImageSaveResult::Status::Saved) << qPrintable(result.reason);
    return path;
}

CProjectEnvironment CProjectFixture::GetEnvironment()
{
    return {.programFolder = scratch.Path(QStringLiteral("program/")),
            .picturesFolder = scratch.Path(QStringLiteral("photos")),
            .settings = settings.get(),
            .tempFolder = &tempFolder};
}

CGalleryProject& CProjectFixture::NewProject()
{
    project = std::make_unique<CGalleryProject>(GetEnvironment());
    project->New();
    CGallery& root = GetRoot();
    root.SetTemplate(root.GetLayout().GetTemplateKey());
    return *project;
}

CGalleryProject& CProjectFixture::OpenProject(const QString& path)
{
    return OpenProject(path, GetEnvironment());
}

CGalleryProject& CProjectFixture::OpenProject(const QString& path, const CProjectEnvironment& environment)
{
    project = std::make_unique<CGalleryProject>(environment);
    project->Open(path);
    return *project;
}

CGallery& CProjectFixture::GetRoot()
{
    return *project->GetGallery(project->GetRootGalleryIndex());
}

void KeepingTimes(const QString& path, const std::function<void()>& change)
{
    struct stat before {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &before), 0);
    change();
    const timespec times[] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
}
