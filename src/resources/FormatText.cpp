#include "resources/FormatText.h"

namespace {

// Length of the placeholder at a "%", 0 if there is none.
qsizetype PlaceholderLength(QStringView text)
{
    for (const QLatin1String placeholder : {QLatin1String("%s"), QLatin1String("%d"), QLatin1String("%x"),
                                            QLatin1String("%hs"), QLatin1String("%hc")}) {
        if (text.startsWith(placeholder)) {
            return placeholder.size();
        }
    }
    return 0;
}

} // namespace

QString FormatText(const QString& format, std::initializer_list<CFormatArgument> arguments)
{
    QString result;
    auto argument = arguments.begin();
    qsizetype position = 0;
    while (position < format.size()) {
        const QStringView rest = QStringView(format).mid(position);
        const qsizetype placeholder = PlaceholderLength(rest);
        if (placeholder > 0 && argument != arguments.end()) {
            result += (argument++)->GetText();
            position += placeholder;
        } else if (rest.startsWith(QLatin1String("%%"))) {
            result += QLatin1Char('%');
            position += 2;
        } else {
            result += rest.front();
            ++position;
        }
    }
    return result;
}
