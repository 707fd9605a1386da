#pragma once

#include <cstdint>
#include <optional>

#include <QString>

// The parts of the file name of one output page: "page12.html" is page 12 of the layout page "page.html".
struct PageName {
    QString base;
    int32_t number = 0; // 0 for a name without digits; a longer number than 32 bits hold is the largest
    QString extension;  // with its dot

    bool operator==(const PageName&) const = default;
};

// Nothing for a null name, a name without ".", and one with nothing or only digits before its last ".".
std::optional<PageName> SplitPageName(const QString& name);

// "base" + number + "extension", the number also for page 0.
QString JoinPageName(const PageName& name);
