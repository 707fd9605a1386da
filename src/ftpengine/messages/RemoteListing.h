#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include <QDateTime>

#include "ftpengine/session/RemoteSession.h"

// Listings as sessions read them: with sizes and times, and in more forms than a person's list of folders
// (FTPDirectoryContent.h) knows.

// One line of a listing for programs (RFC 3659, 7): "type=file;size=12;modify=20260131120000; a name".
// Nothing if it isn't one, or of the directory itself or the one above.
std::optional<RemoteEntry> ReadFactsLine(const QString& line);

// One line of a listing for people: in the form of the Unix "ls -l", with the date in either of its forms, or
// of DOS. now: decides the year of a date that has a time in its place. Times count as UTC, which most
// servers mean. Nothing for lines of another kind, and for "." and "..". A link has its own name, and counts
// as a file of unknown size.
std::optional<RemoteEntry> ReadListedLine(const QString& line, const QDateTime& now);

// Lines end in "\r\n" or "\n".
std::vector<RemoteEntry> ReadFacts(std::string_view listing);
std::vector<RemoteEntry> ReadListed(std::string_view listing, const QDateTime& now);
