#include "Check.h"
#include "ftpengine/ssh/KnownHosts.h"

// A known_hosts file that anybody may have written.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QByteArray file(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    const auto keys = FindKnownHostKeys(file, QStringLiteral("example.org"), 22);
    Check(static_cast<qsizetype>(keys.size()) <= file.count('\n') + 1, "a line gives one key");
    for (const KnownHostKey& key : keys) {
        Check(!KindOfHostKey(key.blob).isEmpty(), "a key has a kind");
        const auto doubt = JudgeHostKey(keys, key.blob);
        Check(doubt == ServerIdentity::Doubt::None || doubt == ServerIdentity::Doubt::Changed,
              "a key of the file is known or revoked");
    }
    return 0;
}
