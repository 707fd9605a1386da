#include "shell/web/ServedFiles.h"

#include <QFileInfo>

#include "common/FileSystem.h"

CServedFiles::File CServedFiles::StateOf(const QString& path)
{
    const QFileInfo info(path);
    return {.time = info.lastModified(), .size = info.size()};
}

void CServedFiles::Note(const QString& path)
{
    files.try_emplace(path, StateOf(path));
}

QByteArray CServedFiles::Readdressed(const QByteArray& page)
{
    QByteArray result = page;
    for (auto& [path, file] : files) {
        const File now = StateOf(path);
        if (now.time != file.time || now.size != file.size) {
            file = {.time = now.time, .size = now.size, .version = file.version + 1};
        }
        if (file.version > 0) {
            Readdress(result, path, file.version);
        }
    }
    return result;
}

// "/a/b.css" becomes "/a/b.css?1" where it is the whole of an attribute.
void CServedFiles::Readdress(QByteArray& page, const QString& path, int version)
{
    const QByteArray address = AddressOfFile(path).toUtf8();
    const QByteArray versioned = address + '?' + QByteArray::number(version);
    for (const char quote : {'"', '\''}) {
        page.replace(quote + address + quote, quote + versioned + quote);
    }
}
