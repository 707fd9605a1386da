#include "document/content/PageName.h"

#include "common/Text.h"

namespace {

bool IsDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

} // namespace

std::optional<PageName> SplitPageName(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0) {
        return std::nullopt;
    }
    qsizetype digits = dot;
    while (digits > 0 && IsDigit(name[digits - 1])) {
        --digits;
    }
    if (digits == 0) {
        return std::nullopt;
    }
    return PageName{.base = name.left(digits),
                    .number = ParseInteger(Narrow(name.mid(digits, dot - digits))),
                    .extension = name.mid(dot)};
}

QString JoinPageName(const PageName& name)
{
    return name.base + QString::number(name.number) + name.extension;
}
