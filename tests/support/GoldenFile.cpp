#include "support/GoldenFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

const char* const GoldenFilesAreRenewed = "The golden files were renewed; nothing was compared.";

bool RenewsGoldenFiles()
{
    return qEnvironmentVariableIsSet("VISTORAMA_RENEW_GOLDEN");
}

void RenewGoldenFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly) && file.readAll() == bytes) {
        return;
    }
    file.close();
    EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path())) << qPrintable(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << qPrintable(path);
    EXPECT_EQ(file.write(bytes), bytes.size()) << qPrintable(path);
}
