#include "shell/web/ExternalDispatchBase.h"

#include <cmath>

namespace {

// Undefined, as opposed to null.
bool IsMissing(const QVariant& argument)
{
    return !argument.isValid();
}

bool IsScalar(const QVariant& argument)
{
    switch (argument.typeId()) {
    case QMetaType::QString:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

} // namespace

DispatchResult CExternalDispatchBase::GetIDsOfNames(const QStringList& names, std::vector<int>& ids) const
{
    const QStringList methods = GetMethodNames();
    DispatchResult result = DispatchResult::Ok;
    ids.clear();
    for (const QString& name : names) {
        int dispid = UnknownDispid;
        for (qsizetype i = 0; i < methods.size(); ++i) {
            if (methods[i].compare(name, Qt::CaseInsensitive) == 0) {
                dispid = static_cast<int>(i) + 1;
            }
        }
        if (dispid == UnknownDispid) {
            result = DispatchResult::UnknownName;
        }
        ids.push_back(dispid);
    }
    return result;
}

DispatchResult CExternalDispatchBase::Invoke(int dispid, DispatchKind kind, const QVariantList& arguments)
{
    if (kind != DispatchKind::Method || dispid < 1 || dispid > GetMethodNames().size()) {
        return DispatchResult::MemberNotFound;
    }
    return CallMethod(dispid, arguments);
}

std::optional<QString> TextArgument(const QVariant& argument)
{
    return IsMissing(argument) || IsScalar(argument) ? std::optional(argument.toString()) : std::nullopt;
}

std::optional<int32_t> NumberArgument(const QVariant& argument)
{
    if (IsMissing(argument)) {
        return 0;
    }
    bool isNumber = false;
    // Rounded to the nearest, as the conversion of variants does it; half a pixel is no reason to refuse.
    const double number = IsScalar(argument) ? std::nearbyint(argument.toDouble(&isNumber)) : 0;
    if (!isNumber || !(number >= INT32_MIN && number <= INT32_MAX)) {
        return std::nullopt;
    }
    return static_cast<int32_t>(number);
}

std::optional<bool> FlagArgument(const QVariant& argument)
{
    if (argument.typeId() == QMetaType::QString) {
        const QString text = argument.toString();
        const bool isTrue = text.compare(QStringLiteral("true"), Qt::CaseInsensitive) == 0;
        if (isTrue || text.compare(QStringLiteral("false"), Qt::CaseInsensitive) == 0) {
            return isTrue;
        }
        bool isNumber = false;
        const double number = text.toDouble(&isNumber);
        return isNumber ? std::optional(number != 0) : std::nullopt;
    }
    if (!IsMissing(argument) && !IsScalar(argument)) {
        return std::nullopt;
    }
    return argument.toDouble() != 0;
}

std::optional<QStringList> TextArguments(const QVariantList& arguments)
{
    QStringList texts;
    for (const QVariant& argument : arguments) {
        const std::optional<QString> text = TextArgument(argument);
        if (!text) {
            return std::nullopt;
        }
        texts += *text;
    }
    return texts;
}
