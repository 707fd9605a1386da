#pragma once

#include <QByteArray>
#include <QString>

// The files that are built into the program: scripts ("js"), pages ("html") and pictures ("png").
// Thread-safe; the bytes are shared and never change.

// The bytes of a resource; null if there is none of this name and type. Names compare without regard to case.
QByteArray FindResource(const QString& name, const QString& type);
