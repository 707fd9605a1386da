#include "SavedProject.h"

#include <algorithm>

#include <QFile>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

#include "common/FileSystem.h"

namespace {

QString Attribute(const QXmlStreamReader& reader, const char* name)
{
    return reader.attributes().value(QLatin1String(name)).toString();
}

SavedProject::Picture ReadPicture(QXmlStreamReader& reader)
{
    SavedProject::Picture picture;
    picture.name = ExtractLastName(Attribute(reader, "path"));
    picture.angle = Attribute(reader, "angle").toInt();
    while (reader.readNextStartElement()) {
        picture.variables[Attribute(reader, "name")] = Attribute(reader, "bstrVal");
        reader.skipCurrentElement();
    }
    return picture;
}

SavedProject::Gallery ReadGallery(QXmlStreamReader& reader)
{
    SavedProject::Gallery gallery;
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("picture_list")) {
            while (reader.readNextStartElement()) {
                gallery.pictures.push_back(ReadPicture(reader));
            }
            continue;
        }
        if (reader.name() == QLatin1String("style")) {
            for (const QXmlStreamAttribute& attribute : reader.attributes()) {
                gallery.style[attribute.name().toString()] = attribute.value().toString();
            }
        }
        reader.skipCurrentElement();
    }
    return gallery;
}

} // namespace

SavedProject::SavedProject(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return;
    }
    text = QString::fromUtf8(file.readAll());
    QXmlStreamReader reader(text);
    reader.readNextStartElement();
    currentGallery = Attribute(reader, "current_gallery_index").toInt();
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("gallery")) {
            const int index = Attribute(reader, "index").toInt();
            galleries[index] = ReadGallery(reader);
        } else {
            reader.skipCurrentElement();
        }
    }
}

const SavedProject::Picture* SavedProject::Gallery::Find(const QString& name) const
{
    const auto found = std::find_if(pictures.begin(), pictures.end(),
                                    [&](const Picture& picture) { return picture.name == name; });
    return found != pictures.end() ? &*found : nullptr;
}

QStringList SavedProject::Gallery::GetNames() const
{
    QStringList names;
    for (const Picture& picture : pictures) {
        names += picture.name;
    }
    return names;
}

void ChooseGallery(const QString& project, int gallery)
{
    QFile file(project);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QByteArray text = file.readAll();
    text.replace("current_gallery_index=\"0\"",
                 "current_gallery_index=\"" + QByteArray::number(gallery) + '"');
    file.close();
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}
