#include "shell/dialogs/LineBreaks.h"

namespace {

// Not the "<br/>" of HTML. Projects hold it so, and browsers take it for a line break all the same.
const QString StoredBreak = QStringLiteral("</br>");
const QString ShownBreak = QStringLiteral("\n");

} // namespace

QString ShowLineBreaks(const QString& stored)
{
    return QString(stored).replace(StoredBreak, ShownBreak);
}

QString StoreLineBreaks(const QString& shown)
{
    QString text = shown;
    text.replace(QStringLiteral("\r\n"), ShownBreak);
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text.replace(ShownBreak, StoredBreak);
}

qsizetype LengthWithLineEnds(const QString& shown)
{
    return shown.size() + shown.count(QLatin1Char('\n'));
}
