#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <QString>

// A password while it is held, in UTF-8, in memory of its own that core dumps leave out, that isn't written
// to the swap space as far as the system grants that, and that is wiped with the last copy of the value. The
// text never changes; copies may be used on several threads.
class CSecretText final {
public:
    CSecretText() = default; // empty
    // The text itself stays as it is with its owner. Not explicit: records of servers are written with texts.
    // Throws std::bad_alloc.
    CSecretText(const QString& text);

    // Terminated by a zero byte; never null. Lives as long as a copy of the value.
    const char* GetBytes() const;
    // Without that byte.
    std::size_t GetSize() const;
    std::string_view GetView() const { return {GetBytes(), GetSize()}; }
    bool IsEmpty() const { return pages == nullptr; }
    // For a dialog or a store, who wipe it (WipeText).
    QString GetText() const;

    bool operator==(const CSecretText& other) const { return GetView() == other.GetView(); }

private:
    class CPages;
    std::shared_ptr<const CPages> pages; // null if it is empty
};

// Overwrites a text that nobody else shares, and empties it without letting its memory go; one that is shared
// is only let go.
void WipeText(QString& text);
void WipeText(std::string& text);
