#include "template/contracts/ContentGeneratorStringConverter.h"

#include <cmath>

#include <QLocale>

#include "common/Exceptions.h"

namespace {

QString RealToText(double number)
{
    if (!std::isfinite(number)) {
        throw CUnexpectedException("ContentGeneratorStringConverter", __LINE__,
                                   Text(StringId::ValueNotConverted));
    }
    constexpr int significantDigits = 15; // what a 64-bit real keeps of any decimal number
    // Of the user's locale only the decimal point: its digits and its minus sign may be other characters, and
    // an attribute that holds such a number would read as 0.
    QString text = QString::number(number, 'g', significantDigits);
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
