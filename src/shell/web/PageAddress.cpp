#include "shell/web/PageAddress.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

// More levels than any link of a site climbs.
constexpr int depth = 8;

const QString& PageFolder()
{
    static const QString folder = QStringLiteral("/~page/");
    return folder;
}

QString Level(int level)
{
    return QLatin1Char('~') + QString::number(level);
}

QString PagePath(int revision)
{
    QString path = PageFolder() + QString::number(revision) + QLatin1Char('/');
    for (int level = 1; level <= depth; ++level) {
        path += Level(level) + QLatin1Char('/');
    }
    return path;
}

QUrl AddressOf(const QString& view, const QString& path)
{
    QUrl address;
    address.setScheme(QLatin1String(PageScheme));
    address.setHost(view);
    address.setPath(path);
    return address;
}

// The revision that a path below the folder of pages names, else -1.
int RevisionOf(const QString& path)
{
    if (!path.startsWith(PageFolder())) {
        return -1;
    }
    bool isNumber = false;
    const int revision = path.section(QLatin1Char('/'), 2, 2).toInt(&isNumber);
    return isNumber ? revision : -1;
}

} // namespace

QUrl ShellAddress(const QString& view)
{
    return AddressOf(view, QStringLiteral("/"));
}

QUrl PageAddress(const QString& view, int revision)
{
    return AddressOf(view, PagePath(revision));
}

int PageRevision(const QUrl& address)
{
    const int revision = RevisionOf(address.path());
    return revision >= 0 && address.path() == PagePath(revision) && !address.hasQuery() ? revision : -1;
}

QByteArray WithArtworkPaths(const QByteArray& page)
{
    const QByteArray scheme = QByteArray(ArtworkScheme) + "://";
    if (!page.contains(scheme)) {
        return page;
    }
    static const QRegularExpression address(
        QStringLiteral("(%1://[^\\s\"'#<>]*/)#(2/)#(?=\\d)").arg(QLatin1String(ArtworkScheme)));
    // Byte for byte, whatever the page's charset is.
    return QString::fromLatin1(page).replace(address, QStringLiteral("\\1\\2")).toLatin1();
}

QString ArtworkNumber(const QUrl& address)
{
    return address.hasFragment() ? address.fragment().section(QLatin1Char('#'), -1)
                                 : address.path().section(QLatin1Char('/'), -1);
}

QString LinkAsWritten(const QUrl& link)
{
    if (link.scheme() != QLatin1String(PageScheme)) {
        return link.toString(QUrl::RemoveFragment);
    }
    const QString path = link.path(QUrl::FullyDecoded);
    const QString query = link.hasQuery() ? QLatin1Char('?') + link.query(QUrl::FullyDecoded) : QString();
    if (!path.startsWith(PageFolder())) {
        return path + query;
    }
    const QStringList parts = path.split(QLatin1Char('/'));
    qsizetype part = 3; // after "", "~page" and the revision
    int level = 1;
    while (level <= depth && part < parts.size() && parts[part] == Level(level)) {
        ++part;
        ++level;
    }
    return QStringLiteral("../").repeated(depth + 1 - level) + parts.mid(part).join(QLatin1Char('/')) + query;
}
