#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

// The addresses of the pages of the views. Each view is a host of its own; a page is served below a folder
// that is deep enough for relative links to climb out of their page and still be told apart; every other path
// is that of a file.

inline constexpr char PageScheme[] = "vistorama-view";
inline constexpr char ArtworkScheme[] = "res";

// The page that holds the others, one at a time.
QUrl ShellAddress(const QString& view);
QUrl PageAddress(const QString& view, int revision);
// The revision of the page that is served under the address; -1 if it is no page's.
int PageRevision(const QUrl& address);

// The page with every "res://PROGRAM/#2/#271" as "res://PROGRAM/2/271". The browser takes two addresses that
// differ after the "#" alone for one file when it reads ahead, and would mix up their pictures.
QByteArray WithArtworkPaths(const QByteArray& page);
// The number of a piece of artwork, written either way; empty if there is none.
QString ArtworkNumber(const QUrl& address);

// What a page wrote for a link that was resolved against its address, without what stands from "#": the base
// of the page is taken off again. An address elsewhere stays whole.
QString LinkAsWritten(const QUrl& link);
