#include "common/Platform.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include "common/Exceptions.h"
#include "common/FileSystem.h"

namespace {

QString ExecutableFolder()
{
    const QString executable = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    return ExtractFolder(executable);
}

QString UserFolder(QStandardPaths::StandardLocation location)
{
    return QDir::toNativeSeparators(QStandardPaths::writableLocation(location));
}

} // namespace

QString WithoutBuildFolder(const QString& folder)
{
    for (const QLatin1String name : {QLatin1String("/Release/"), QLatin1String("/Debug/")}) {
        if (folder.endsWith(name)) {
            return folder.left(folder.size() - name.size() + 1);
        }
    }
    return folder;
}

QString FindProgramFolder()
{
    const QString chosen = qEnvironmentVariable("VISTORAMA_DATA");
    if (!chosen.isEmpty()) {
        return WithTrailingSeparator(chosen);
    }
    const QString beside = WithoutBuildFolder(ExecutableFolder());
    if (FolderExists(JoinPath(beside, QStringLiteral("Templates")))) {
        return beside;
    }
    return WithTrailingSeparator(
        QDir::cleanPath(JoinPath(ExecutableFolder(), QStringLiteral("../share/vistorama"))));
}

QString FindPicturesFolder()
{
    return UserFolder(QStandardPaths::PicturesLocation);
}

QString FindDeploymentRecordsFolder()
{
    return JoinPath(UserFolder(QStandardPaths::GenericCacheLocation),
                    QStringLiteral("vistorama/deployments"));
}

QString FindSitesFolder()
{
    return JoinPath(UserFolder(QStandardPaths::GenericCacheLocation), QStringLiteral("vistorama/sites"));
}

QString FindCoversFolder()
{
    return JoinPath(UserFolder(QStandardPaths::GenericCacheLocation), QStringLiteral("vistorama/covers"));
}

QString FindImageCacheFolder()
{
    return JoinPath(UserFolder(QStandardPaths::GenericCacheLocation), QStringLiteral("vistorama/images"));
}

QString FindTemporaryFolder()
{
    const QString parent =
        JoinPath(UserFolder(QStandardPaths::GenericCacheLocation), QStringLiteral("vistorama"));
    MakeDirectoryPath(parent, DirectoryAccess::OwnerOnly);
    const QString folder = JoinPath(parent, QStringLiteral("tmp"));
    const QByteArray name = QFile::encodeName(folder);
    if (::mkdir(name.constData(), 0700) != 0 && errno != EEXIST) {
        throw CWin32Exception(errno, Text(StringId::DirectoryNotCreated, folder));
    }
    // Not stat: a link planted by somebody else must not lead the program's files elsewhere.
    struct stat status;
    const bool safe = ::lstat(name.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
                      status.st_uid == ::geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
    if (!safe) {
        throw CUnexpectedException("Platform", __LINE__, Text(StringId::UnsafeTemporaryFolder, folder));
    }
    return WithTrailingSeparator(folder);
}

QString FindSettingsFolder()
{
    return UserFolder(QStandardPaths::GenericConfigLocation);
}

QString FindMachineSettingsFolder()
{
    return QStringLiteral("/etc/xdg");
}

QString FindDataFolder()
{
    return UserFolder(QStandardPaths::GenericDataLocation);
}

QString FindTrustFolder()
{
    return JoinPath(FindDataFolder(), QStringLiteral("vistorama/trusted-servers"));
}

QString FindBackupsFolder()
{
    return JoinPath(FindDataFolder(), QStringLiteral("vistorama/earlier-versions"));
}
