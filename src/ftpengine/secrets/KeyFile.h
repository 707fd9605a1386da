#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include <QString>

// A key for secretbox of libsodium. Erased from memory at its end.
class CSecretKey {
public:
    static constexpr size_t Size = 32;

    CSecretKey() = default;
    ~CSecretKey();
    CSecretKey(const CSecretKey&) = default;
    CSecretKey& operator=(const CSecretKey&) = default;

    uint8_t* GetBytes() { return bytes.data(); }
    const uint8_t* GetBytes() const { return bytes.data(); }

private:
    std::array<uint8_t, Size> bytes{};
};

// A file of one random key and nothing else. Owned by the password protection; thread-safe, also against
// other programs that make the same file.
class CKeyFile {
public:
    // OwnerOnly: mode 0600, and it must belong to this user. Everybody: mode 0644, and it must belong to this
    // user or to the administrator.
    enum class Readers { OwnerOnly, Everybody };

    CKeyFile(const QString& path, Readers readers) : path(path), readers(readers) {}

    const QString& GetPath() const { return path; }

    // Nothing if there is no file, or if somebody else could have read or changed it, or if it is damaged.
    std::optional<CSecretKey> Load() const;
    // Makes a file with a new key if there is none. Never touches an unfit one: passwords may hang on it.
    std::optional<CSecretKey> LoadOrMake() const;

private:
    bool Make() const;

    const QString path;
    const Readers readers;
};
