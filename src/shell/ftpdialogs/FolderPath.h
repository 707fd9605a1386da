#pragma once

#include <QString>

// The path of a person who walks through the folders of a server.

// The directory that activating a row of that name asks for: "" and "a" give "a", "a" and ".." give "a/..".
QString EnteredPath(const QString& directory, const QString& name);

// "a/b/.." gives "a", and "a/.." the empty path: the way up is a name like any other until the server has
// gone it.
QString NormalisedPath(const QString& path);

// The text of the row that waits for a listing, a second later: up to 30 dots, then without any again.
QString WithOneMoreDot(const QString& text);
