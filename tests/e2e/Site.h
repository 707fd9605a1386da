#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

// A deployed site on disk, for checks of its links.
class CSite {
public:
    explicit CSite(const QString& folder) : folder(folder) {}

    // Relative paths of all pages, sorted.
    QStringList GetPages() const;
    // Relative paths of all files, sorted.
    QStringList GetFiles() const;

    // Each link or picture of a page that leads to no file of the site, as "page -> target". Addresses of
    // other sites and places inside a page are not looked at.
    QStringList FindBrokenLinks() const;
    // Targets outside the site, other than links that a visitor may follow: whatever a browser would load.
    QStringList FindForeignResources() const;
    // Pages that can't be reached by links from index.html.
    QStringList FindUnreachablePages() const;

private:
    struct Link {
        QString page;
        QString element; // "a", "img", "link", "script", "iframe", "url" of a style sheet
        QString target;  // as written
    };
    QList<Link> ReadLinks(const QString& page) const;
    QList<Link> ReadStyleLinks(const QString& sheet) const;
    QList<Link> ReadAllLinks() const;
    // The relative path of the file that a link leads to; null if it leaves the site.
    QString Resolve(const Link& link) const;

    const QString folder;
};
