#include "TestProject.h"

#include <QDateTime>
#include <QFile>
#include <gtest/gtest.h>

#include "common/FileSystem.h"
#include "document/pictures/PictureInfo.h"

namespace {

CProjectEnvironment EnvironmentOf(const CScratchFolder& scratch, CSettingsStore& settings,
                                  CTempFolder& tempFolder)
{
    return {.programFolder = scratch.Path(QStringLiteral("program")),
            .picturesFolder = scratch.Path(QStringLiteral("pictures")),
            .settings = &settings,
            .tempFolder = &tempFolder};
}

} // namespace

CTestProject::CTestProject()
    : settings(CreateIniSettings(scratch.Path(QStringLiteral("settings")),
                                 scratch.Path(QStringLiteral("machine")))),
      tempFolder(scratch.Path()),
      environment(EnvironmentOf(scratch, *settings, tempFolder)),
      project(environment)
{}

QString CTestProject::AddLayout(const QString& name, const QByteArray& pageElements)
{
    const QByteArray xml = "<template name=\"Layout " + name.toUtf8() + "\" folder=\"" + name.toUtf8() +
                           "\" group=\"g\">" + pageElements + "</template>";
    return Lower(scratch.Write(QStringLiteral("program/Templates/%1.xml").arg(name), xml));
}

void CTestProject::AddPage(const QString& layout, const QString& file, int slotCount)
{
    QByteArray text = "<html>";
    for (int slot = 0; slot < slotCount; ++slot) {
        text += "<%picture id=\"p" + QByteArray::number(slot) + "\" width=\"100\" height=\"100\" href=\"\"%>";
    }
    AddPageText(layout, file, text + "</html>");
}

void CTestProject::AddPageText(const QString& layout, const QString& file, const QByteArray& text)
{
    scratch.Write(QStringLiteral("program/Templates/%1/%2").arg(layout, file), text);
}

QString CTestProject::AddStyle(const QString& name, const QByteArray& attributes)
{
    const QByteArray narrow = name.toUtf8();
    const QByteArray xml = "<style css=\"" + narrow + ".css\" name=\"Style " + narrow + "\" folder=\"" +
                           narrow + "\" group=\"g\" " + attributes + "/>";
    return Lower(scratch.Write(QStringLiteral("program/Styles/%1.xml").arg(name), xml));
}

void CTestProject::AddStandard()
{
    AddLayout(QStringLiteral("plain"),
              "<page file=\"index.html\"/><page file=\"picture.html\" multipage=\"1\"/>");
    AddPage(QStringLiteral("plain"), QStringLiteral("index.html"), 4);
    AddPage(QStringLiteral("plain"), QStringLiteral("picture.html"), 1);
    AddStyle(QStringLiteral("blue"));
}

QString CTestProject::MakePicture(const QString& name)
{
    return MakePicture(name, QDate(2020, 1, 1));
}

QString CTestProject::MakePicture(const QString& name, const QDate& date)
{
    const QString path = scratch.Write(QStringLiteral("pictures/") + name, "no picture");
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadWrite));
    EXPECT_TRUE(file.setFileTime(QDateTime(date, QTime(12, 0)), QFileDevice::FileModificationTime));
    return path;
}

CGallery& CTestProject::NewGallery(int pictureCount)
{
    project.New();
    CGallery& gallery = *project.GetRootGallery();
    for (int number = 1; number <= pictureCount; ++number) {
        gallery.AddPicture(MakePicture(QStringLiteral("%1.jpg").arg(number)));
    }
    return gallery;
}

void CTestProject::LoadXml(const QByteArray& xml)
{
    scratch.Write(QStringLiteral("site/My.gallery"), xml);
    project.Load(ProjectPath());
}

QString CTestProject::Entries(CGallery& gallery)
{
    QStringList names;
    for (int32_t position = 0; position < gallery.GetPictures().GetCount(); ++position) {
        const CPictureInfo* const record = gallery.GetPictures().GetAt(position);
        if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(record)) {
            names += QStringLiteral("<%1>").arg(child->GetGalleryIndex());
        } else {
            names += ExtractLastName(record->GetPath());
        }
    }
    return names.join(QLatin1Char(' '));
}

QString CTestProject::ValueOf(CGallery& gallery, const QString& object, const QString& name)
{
    const std::optional<CVariant> value = gallery.GetObjectVariable(object, name);
    QString text = Described(value.value_or(CVariant()));
    text.replace(scratch.Path(), QStringLiteral("~/"));
    return value ? text : QStringLiteral("not found, ") + text;
}

QString Described(const CVariant& value)
{
    switch (value.GetType()) {
    case CVariant::Type::Empty:
        return QStringLiteral("empty");
    case CVariant::Type::Integer:
        return QStringLiteral("#%1").arg(value.GetInteger());
    case CVariant::Type::Real:
        return QStringLiteral("real:%1").arg(value.GetNumber());
    case CVariant::Type::Date:
        return QStringLiteral("date:%1").arg(value.GetNumber(), 0, 'g', 12);
    case CVariant::Type::String:
        return value.GetString();
    }
    return QStringLiteral("unknown");
}
