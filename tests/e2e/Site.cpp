#include "Site.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QUrl>

#include "common/FileSystem.h"
#include "support/ScratchFolder.h"

namespace {

QString ReadText(const QString& path)
{
    return QString::fromUtf8(ReadWholeFile(path));
}

bool LeadsElsewhere(const QString& target)
{
    static const QRegularExpression scheme(QStringLiteral("^([a-zA-Z][a-zA-Z0-9+.-]*:|//)"));
    return scheme.match(target).hasMatch();
}

} // namespace

QStringList CSite::GetFiles() const
{
    return FilesBelow(folder);
}

QStringList CSite::GetPages() const
{
    return GetFiles().filter(QRegularExpression(QStringLiteral("\\.html$")));
}

QList<CSite::Link> CSite::ReadLinks(const QString& page) const
{
    static const QRegularExpression attribute(
        QStringLiteral(
            "<(a|img|link|script|iframe|source)\\b[^>]*?\\s(?:href|src)\\s*=\\s*(\"[^\"]*\"|'[^']*')"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    QList<Link> links;
    auto matches = attribute.globalMatch(ReadText(JoinPath(folder, page)));
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const QString quoted = match.captured(2);
        links += {page, match.captured(1).toLower(), quoted.mid(1, quoted.size() - 2)};
    }
    return links;
}

QList<CSite::Link> CSite::ReadStyleLinks(const QString& sheet) const
{
    static const QRegularExpression address(QStringLiteral("url\\(\\s*['\"]?([^'\")]+)['\"]?\\s*\\)"));
    QList<Link> links;
    auto matches = address.globalMatch(ReadText(JoinPath(folder, sheet)));
    while (matches.hasNext()) {
        links += {sheet, QStringLiteral("url"), matches.next().captured(1)};
    }
    return links;
}

QList<CSite::Link> CSite::ReadAllLinks() const
{
    QList<Link> links;
    for (const QString& file : GetFiles()) {
        if (file.endsWith(QStringLiteral(".html"))) {
            links += ReadLinks(file);
        } else if (file.endsWith(QStringLiteral(".css"))) {
            links += ReadStyleLinks(file);
        }
    }
    return links;
}

QString CSite::Resolve(const Link& link) const
{
    if (LeadsElsewhere(link.target)) {
        return QString();
    }
    const QUrl base(QStringLiteral("site:/") + link.page);
    const QUrl target = base.resolved(QUrl(link.target));
    return target.path().mid(1);
}

QStringList CSite::FindBrokenLinks() const
{
    QStringList broken;
    for (const Link& link : ReadAllLinks()) {
        if (LeadsElsewhere(link.target) || link.target.startsWith(QLatin1Char('#'))) {
            continue;
        }
        const QString file = JoinPath(folder, Resolve(link));
        if (link.target.isEmpty() || !FileExists(file) || FolderExists(file)) {
            broken += link.page + QStringLiteral(" -> ") + link.target;
        }
    }
    return broken;
}

QStringList CSite::FindForeignResources() const
{
    QStringList foreign;
    for (const Link& link : ReadAllLinks()) {
        if (link.element != QStringLiteral("a") && LeadsElsewhere(link.target) &&
            !link.target.startsWith(QStringLiteral("data:"))) {
            foreign += link.page + QStringLiteral(" -> ") + link.target;
        }
    }
    return foreign;
}

QStringList CSite::FindUnreachablePages() const
{
    QSet<QString> reached{QStringLiteral("index.html")};
    QStringList waiting = reached.values();
    while (!waiting.isEmpty()) {
        for (const Link& link : ReadLinks(waiting.takeFirst())) {
            const QString target = Resolve(link);
            if (target.endsWith(QStringLiteral(".html")) && FileExists(JoinPath(folder, target)) &&
                !reached.contains(target)) {
                reached.insert(target);
                waiting += target;
            }
        }
    }
    QStringList unreachable;
    for (const QString& page : GetPages()) {
        if (!reached.contains(page)) {
            unreachable += page;
        }
    }
    return unreachable;
}
