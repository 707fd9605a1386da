#pragma once

#include <initializer_list>

#include <QByteArray>
#include <QString>

#include "resources/StringTable.h"

// The files that are built into the program: scripts ("js"), pages ("html") and pictures ("png").
// Thread-safe; the bytes are shared and never change.

// The bytes of a resource; null if there is none of this name and type. Names compare without regard to case.
QByteArray FindResource(const QString& name, const QString& type);

// The page NAME.html. These of its words, which stand in the file in English, each right after a tag, are in
// the language of the installed catalogue.
QByteArray FindPage(const QString& name, std::initializer_list<StringId> words);
