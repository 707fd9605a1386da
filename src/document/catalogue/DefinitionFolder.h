#pragma once

#include <functional>

#include <QString>

// Calls onFile with the full path of each definition file of a folder: each file named "*.xml", without
// regard to case, in name order. Hidden files and folders are passed over; a missing folder has no files.
// Throws CUnexpectedException for a full path of more than 1024 characters.
void ScanFolder(const QString& folder, const std::function<void(const QString& fullPath)>& onFile);

// The folder of a file, absolute and with a trailing separator, also for a bare file name.
QString AbsoluteFolderOf(const QString& path);
