#include "template/contracts/ContentGeneratorStringConverter.h"

#include <cmath>

#include <QLocale>

#include "common/Exceptions.h"

namespace {

constexpr int SignificantDigits = 15; // what a 64-bit real keeps of any decimal number

// Digits and a point, however large or small the number is: scripts and attributes of layouts take no
// exponent.
QString PlainDecimal(double number)
{
    const QString text = QString::number(number, 'g', SignificantDigits);
    const qsizetype mark = text.indexOf(QLatin1Char('e'));
    if (mark < 0) {
        return text;
    }
    const QString sign = number < 0 ? QStringLiteral("-") : QString();
    QString digits = text.left(mark).remove(QLatin1Char('-')).remove(QLatin1Char('.'));
    const int exponent = text.mid(mark + 1).toInt();
    if (exponent < 0) {
        return sign + QStringLiteral("0.") + QString(-exponent - 1, QLatin1Char('0')) + digits;
    }
    return sign + digits.leftJustified(exponent + 1, QLatin1Char('0'));
}

QString RealToText(double number)
{
    if (!std::isfinite(number)) {
        throw CUnexpectedException("ContentGeneratorStringConverter", __LINE__,
                                   Text(StringId::ValueNotConverted));
    }
    // Of the user's locale only the decimal point: its digits and its minus sign may be other characters, and
    // an attribute that holds such a number would read as 0.
    QString text = PlainDecimal(number);
    return text.replace(QLatin1Char('.'), QLocale::system().decimalPoint());
}

QString DateToText(DateValue date)
{
    const QDate day = DayOfDate(date);
    if (!day.isValid()) {
        throw CUnexpectedException("ContentGeneratorStringConverter", __LINE__,
                                   Text(StringId::ValueNotConverted));
    }
    return QLocale::system().toString(day, QLocale::ShortFormat);
}

} // namespace

QString CContentGeneratorStringConverter::VariantToString(const CVariant& value) const
{
    switch (value.GetType()) {
    case CVariant::Type::Empty:
        return QString();
    case CVariant::Type::Integer:
        return QString::number(value.GetInteger());
    case CVariant::Type::Real:
        return RealToText(value.GetNumber());
    case CVariant::Type::Date:
        return DateToText(value.GetNumber());
    case CVariant::Type::String:
        return value.GetString();
    }
    throw CUnexpectedException("ContentGeneratorStringConverter", __LINE__,
                               Text(StringId::ValueNotConverted));
}
