#pragma once

#include <vector>

#include <QString>
#include <QStringList>
#include <QVariantList>

// How a call of window.external ended.
enum class DispatchResult {
    Ok,
    UnknownName,    // no method of that name
    MemberNotFound, // no method of that number, or not called as a method
    BadParamCount,
    BadVarType,   // an argument that can't become the text that names an object
    TypeMismatch, // an argument of another kind that can't be converted
};

enum class DispatchKind { Method, PropertyGet, PropertyPut };

// What window.external answers to: a table of method names that a page's scripts may call. Owned by a view,
// borrowed by its CHTMLView. Screen's thread, outside of the script's run.
class CExternalDispatchBase {
public:
    virtual ~CExternalDispatchBase() = default;

    static constexpr int UnknownDispid = -1;

    // Names compare without regard to case. ids gets one number for each name; UnknownDispid, and the answer
    // UnknownName, for each that is not known.
    DispatchResult GetIDsOfNames(const QStringList& names, std::vector<int>& ids) const;

    // arguments: in the order in which the script wrote them.
    DispatchResult Invoke(int dispid, DispatchKind kind, const QVariantList& arguments);

    // By dispid, from 1 on.
    virtual QStringList GetMethodNames() const = 0;

protected:
    // dispid: that of one of the methods.
    virtual DispatchResult CallMethod(int dispid, const QVariantList& arguments) = 0;
};

// The conversions of arguments. A missing value (undefined) is an empty text, 0 or false; null, a list and an
// object are nothing that could be converted. False, and out untouched, if there is no conversion.
bool ConvertArgument(const QVariant& argument, QString& out);
bool ConvertArgument(const QVariant& argument, int32_t& out);
bool ConvertArgument(const QVariant& argument, bool& out);
