#include "shell/dialogs/GalleryNames.h"

#include "common/FileSystem.h"
#include "resources/StringTable.h"

QString GalleryPath::Join() const
{
    return JoinPath(folder, name + extension);
}

GalleryPath SplitSuggestion(const QString& path)
{
    QString name = ExtractLastName(path);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const QString extension = dot < 0 ? QString() : name.mid(dot);
    name.chop(extension.size());
    while (!name.isEmpty() && name.back() >= QLatin1Char('0') && name.back() <= QLatin1Char('9')) {
        name.chop(1);
    }
    if (name.isEmpty()) {
        name = Text(StringId::DefaultProjectName);
    }
    return {ExtractFolder(path), name, extension};
}

QString FindFreeName(const GalleryPath& path)
{
    GalleryPath tried = path;
    for (int number = 1; FileExists(tried.Join()); ++number) {
        tried.name = path.name + QString::number(number);
    }
    return tried.name;
}

QString RemoveForbiddenCharacters(const QString& name)
{
    static const QString forbidden = QStringLiteral("~!#$%^&*\\/\"'?<>+=|");
    QString allowed;
    for (const QChar character : name) {
        if (!forbidden.contains(character)) {
            allowed += character;
        }
    }
    return allowed;
}
