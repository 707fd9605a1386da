#include "ftpengine/session/TrustedCertificates.h"

#include <map>

#include <QFile>

#include "common/FileSystem.h"
#include "common/Text.h"

namespace {

using Doubt = ServerIdentity::Doubt;

constexpr qsizetype fingerprintSize = 32;
// Nobody trusts so many servers; a larger file is none of ours.
constexpr qint64 maximalFileSize = 1024 * 1024;

const QString Prefix = QStringLiteral("sha256:");

// "example.org:21", "[fe80::1]:21"
QString KeyOf(const QString& server, uint16_t port)
{
    const QString host = Lower(server);
    return (host.contains(QLatin1Char(':')) ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2"))
        .arg(host)
        .arg(port);
}

// A line is "SERVER:PORT sha256:HEX". Others are left out.
std::map<QString, QByteArray> ReadLines(const QString& path)
{
    std::map<QString, QByteArray> lines;
    QFile file(path);
    if (file.size() > maximalFileSize || !file.open(QIODevice::ReadOnly)) {
        return lines;
    }
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        const QString value = line.section(QLatin1Char(' '), 1, 1);
        const QByteArray fingerprint = QByteArray::fromHex(value.mid(Prefix.size()).toLatin1());
        if (value.startsWith(Prefix) && fingerprint.size() == fingerprintSize) {
            lines[line.section(QLatin1Char(' '), 0, 0)] = fingerprint;
        }
    }
    return lines;
}

} // namespace

std::optional<QByteArray> CTrustedCertificates::Find(const QString& server, uint16_t port) const
{
    if (folder.isEmpty()) {
        return std::nullopt;
    }
    const auto lines = ReadLines(GetPath());
    const auto found = lines.find(KeyOf(server, port));
    return found == lines.end() ? std::nullopt : std::optional(found->second);
}

void CTrustedCertificates::Remember(const ServerIdentity& identity) const
{
    MakeDirectoryPath(folder, DirectoryAccess::OwnerOnly);
    auto lines = ReadLines(GetPath());
    lines[KeyOf(identity.server, identity.port)] = identity.fingerprint;
    QByteArray bytes;
    for (const auto& [key, fingerprint] : lines) {
        bytes += (key + QLatin1Char(' ') + Prefix).toUtf8() + fingerprint.toHex() + '\n';
    }
    WriteFileAtomically(GetPath(), bytes);
}

QString CTrustedCertificates::GetPath() const
{
    return JoinPath(folder, QStringLiteral("certificates"));
}

Doubt RemainingDoubt(const ServerIdentity& identity, const FTPDestinationConnection& destination,
                     const CTrustedCertificates& trusted)
{
    if (identity.fingerprint.isEmpty()) {
        return Doubt::UnknownAuthority;
    }
    if (!destination.fingerprint.isEmpty()) {
        return identity.fingerprint == destination.fingerprint ? Doubt::None : Doubt::Changed;
    }
    if (identity.doubt == Doubt::None) {
        return Doubt::None;
    }
    const auto taken = trusted.Find(identity.server, identity.port);
    if (!taken) {
        return identity.doubt;
    }
    return *taken == identity.fingerprint ? Doubt::None : Doubt::Changed;
}
