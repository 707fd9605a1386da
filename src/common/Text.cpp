#include "common/Text.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

QString Widen(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string Narrow(const QString& text)
{
    return text.toUtf8().toStdString();
}

QString Lower(const QString& text)
{
    return text.toLower();
}

bool EqualsIgnoreCase(const QString& a, const QString& b)
{
    return Lower(a) == Lower(b);
}

int32_t ParseInteger(std::string_view text)
{
    const std::string terminated(text);
    const long long value = std::strtoll(terminated.c_str(), nullptr, 10);
    return static_cast<int32_t>(std::clamp<long long>(value, std::numeric_limits<int32_t>::min(),
                                                      std::numeric_limits<int32_t>::max()));
}
