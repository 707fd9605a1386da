#pragma once

#include <QByteArray>
#include <QString>

// Golden files hold what must come out, byte for byte. "./test golden" has them written instead of compared;
// a test that does so skips itself with GoldenFilesAreRenewed, so that none passes by renewing. Its name has
// "Golden" in it: by that it is found.
bool RenewsGoldenFiles();

extern const char* const GoldenFilesAreRenewed;

// Leaves a file alone that holds the bytes already; makes its folder if need be.
void RenewGoldenFile(const QString& path, const QByteArray& bytes);
