#pragma once

#include <cstddef>

#include <QString>

// A password on its way, in UTF-8, in memory of its own that core dumps leave out, that isn't written to the
// swap space as far as the system grants that, and that is wiped at the end. Owned by whoever needs it.
class CSecretText final {
public:
    CSecretText() = default; // empty
    // The text itself stays as it is with its owner. Throws std::bad_alloc.
    explicit CSecretText(const QString& text);
    CSecretText(CSecretText&& other) noexcept;
    CSecretText& operator=(CSecretText&& other) noexcept;
    ~CSecretText();

    // Terminated by a zero byte; never null.
    const char* GetBytes() const { return bytes == nullptr ? "" : bytes; }
    // Without that byte.
    std::size_t GetSize() const { return size; }
    bool IsEmpty() const { return size == 0; }

private:
    char* bytes = nullptr;    // null if it is empty
    std::size_t size = 0;     // of the text, in bytes
    std::size_t capacity = 0; // whole pages, in bytes
};

// Overwrites a text that nobody else shares, and empties it without letting its memory go; one that is shared
// is only let go.
void WipeText(QString& text);
