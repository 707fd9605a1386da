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

bool ConvertArgument(const QVariant& argument, QString& out)
{
    if (!IsMissing(argument) && !IsScalar(argument)) {
        return false;
    }
    out = argument.toString();
    return true;
}

bool ConvertArgument(const QVariant& argument, int32_t& out)
{
    if (IsMissing(argument)) {
        out = 0;
        return true;
    }
    bool isNumber = false;
    // Rounded to the nearest, as the conversion of variants does it; half a pixel is no reason to refuse.
    const double number = IsScalar(argument) ? std::nearbyint(argument.toDouble(&isNumber)) : 0;
    if (!isNumber || !(number >= INT32_MIN && number <= INT32_MAX)) {
        return false;
    }
    out = static_cast<int32_t>(number);
    return true;
}

bool ConvertArgument(const QVariant& argument, bool& out)
{
    if (argument.typeId() == QMetaType::QString) {
        const QString text = argument.toString();
        const bool isTrue = text.compare(QStringLiteral("true"), Qt::CaseInsensitive) == 0;
        if (isTrue || text.compare(QStringLiteral("false"), Qt::CaseInsensitive) == 0) {
            out = isTrue;
            return true;
        }
        double number = 0;
        bool isNumber = false;
        number = text.toDouble(&isNumber);
        out = isNumber ? number != 0 : out;
        return isNumber;
    }
    if (!IsMissing(argument) && !IsScalar(argument)) {
        return false;
    }
    out = argument.toDouble() != 0;
    return true;
}
