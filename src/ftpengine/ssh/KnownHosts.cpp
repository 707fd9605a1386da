#include "ftpengine/ssh/KnownHosts.h"

#include <algorithm>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QList>
#include <QMessageAuthenticationCode>

#include "common/Exceptions.h"
#include "common/FileSystem.h"

namespace {

constexpr uint16_t usualPort = 22;
constexpr qint64 longestFile = 64 << 20; // bytes

QString OwnFile(const QString& trustFolder)
{
    return JoinPath(trustFolder, QStringLiteral("known_hosts"));
}

// The form in which such files name a server.
QByteArray NameOf(const QString& server, uint16_t port)
{
    const QByteArray host = server.toLower().toUtf8();
    return port == usualPort ? host : '[' + host + "]:" + QByteArray::number(port);
}

// "*" stands for any bytes, "?" for one.
bool MatchesPattern(const char* name, const char* pattern)
{
    for (; *pattern != '\0' && *pattern != '*'; ++pattern, ++name) {
        if (*name == '\0' || (*pattern != '?' && *pattern != *name)) {
            return false;
        }
    }
    if (*pattern == '\0') {
        return *name == '\0';
    }
    // A row of "*" is one of them, so that it doesn't take ages.
    while (pattern[1] == '*') {
        ++pattern;
    }
    for (const char* rest = name;; ++rest) {
        if (MatchesPattern(rest, pattern + 1)) {
            return true;
        }
        if (*rest == '\0') {
            return false;
        }
    }
}

// "|1|SALT|HASH": HMAC-SHA1 of the name, both in base64.
bool MatchesHash(const QByteArray& name, const QByteArray& field)
{
    const QList<QByteArray> parts = field.split('|');
    if (parts.size() != 4 || parts[1] != "1") {
        return false;
    }
    const QByteArray salt = QByteArray::fromBase64(parts[2]);
    return QMessageAuthenticationCode::hash(name, salt, QCryptographicHash::Sha1) ==
           QByteArray::fromBase64(parts[3]);
}

bool MatchesHosts(const QByteArray& name, const QByteArray& hosts)
{
    if (hosts.startsWith('|')) {
        return MatchesHash(name, hosts);
    }
    bool matches = false;
    for (const QByteArray& host : hosts.toLower().split(',')) {
        const bool isNegated = host.startsWith('!');
        if (MatchesPattern(name.constData(), host.constData() + (isNegated ? 1 : 0))) {
            if (isNegated) {
                return false;
            }
            matches = true;
        }
    }
    return matches;
}

QList<QByteArray> SplitFields(const QByteArray& line)
{
    return line.simplified().split(' ');
}

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(longestFile) : QByteArray();
}

void Append(std::vector<KnownHostKey>& keys, const std::vector<KnownHostKey>& others)
{
    keys.insert(keys.end(), others.begin(), others.end());
}

// The lines of a file but those that are about this server.
QByteArray WithoutServer(const QByteArray& file, const ServerIdentity& identity)
{
    QByteArray kept;
    for (const QByteArray& line : file.split('\n')) {
        if (!line.isEmpty() && FindKnownHostKeys(line, identity.server, identity.port).empty()) {
            kept += line + '\n';
        }
    }
    return kept;
}

} // namespace

std::vector<KnownHostKey> FindKnownHostKeys(const QByteArray& file, const QString& server, uint16_t port)
{
    const QByteArray name = NameOf(server, port);
    std::vector<KnownHostKey> keys;
    for (const QByteArray& line : file.split('\n')) {
        QList<QByteArray> fields = SplitFields(line);
        const bool isRevoked = fields[0] == "@revoked";
        if (isRevoked) {
            fields.removeFirst();
        }
        // Comments and other markers match no name.
        if (fields.size() < 3 || !MatchesHosts(name, fields[0])) {
            continue;
        }
        const QByteArray blob = QByteArray::fromBase64(fields[2]);
        if (KindOfHostKey(blob) == fields[1]) {
            keys.push_back({.blob = blob, .isRevoked = isRevoked});
        }
    }
    return keys;
}

std::vector<KnownHostKey> FindKnownHostKeys(const QString& trustFolder, const QString& server, uint16_t port)
{
    QStringList files{QDir::homePath() + QStringLiteral("/.ssh/known_hosts"),
                      QDir::homePath() + QStringLiteral("/.ssh/known_hosts2"),
                      QStringLiteral("/etc/ssh/ssh_known_hosts")};
    if (!trustFolder.isEmpty()) {
        files += OwnFile(trustFolder);
    }
    std::vector<KnownHostKey> keys;
    for (const QString& file : files) {
        Append(keys, FindKnownHostKeys(ReadFile(file), server, port));
    }
    return keys;
}

ServerIdentity::Doubt JudgeHostKey(const std::vector<KnownHostKey>& known, const QByteArray& blob)
{
    using Doubt = ServerIdentity::Doubt;
    const auto isThis = [&blob](const KnownHostKey& key) {
        return key.blob == blob;
    };
    const auto isGood = [](const KnownHostKey& key) {
        return !key.isRevoked;
    };
    if (std::any_of(known.begin(), known.end(), isThis)) {
        const bool isRevoked = std::any_of(known.begin(), known.end(), [&](const KnownHostKey& key) {
            return isThis(key) && key.isRevoked;
        });
        return isRevoked ? Doubt::Changed : Doubt::None;
    }
    return std::any_of(known.begin(), known.end(), isGood) ? Doubt::Changed : Doubt::UnknownAuthority;
}

QByteArray KindOfHostKey(const QByteArray& blob)
{
    constexpr qsizetype lengthSize = 4;
    qsizetype length = 0;
    for (qsizetype i = 0; i < lengthSize && i < blob.size(); ++i) {
        length = length << 8 | static_cast<uint8_t>(blob[i]);
    }
    const bool isThere = length > 0 && length <= blob.size() - lengthSize;
    return isThere ? blob.mid(lengthSize, length) : QByteArray();
}

bool RememberHostKey(const QString& trustFolder, const ServerIdentity& identity)
{
    const QByteArray kind = KindOfHostKey(identity.hostKey);
    if (trustFolder.isEmpty() || kind.isEmpty()) {
        return false;
    }
    const QString path = OwnFile(trustFolder);
    const QByteArray line =
        NameOf(identity.server, identity.port) + ' ' + kind + ' ' + identity.hostKey.toBase64() + '\n';
    try {
        MakeDirectoryPath(trustFolder, DirectoryAccess::OwnerOnly);
    } catch (const CExceptionBase&) {
        return false;
    }
    return ReplaceFile(path, WithoutServer(ReadFile(path), identity) + line, Durability::Synced) == 0;
}
