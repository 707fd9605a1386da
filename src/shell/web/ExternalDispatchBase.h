#pragma once

#include <cstdint>
#include <optional>
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

    // Whether calls of a page are understood. page: the number that CHTMLView::LoadHtml gave it. isCurrent:
    // it is on the screen and no other is on its way; a person may have pressed something on one that isn't
    // current any more, or not yet.
    virtual bool KnowsPage(int /*page*/, bool isCurrent) const { return isCurrent; }
    // Of the call that comes next.
    void SetCallingPage(int page) { callingPage = page; }
    int GetCallingPage() const { return callingPage; }

    // By dispid, from 1 on.
    virtual QStringList GetMethodNames() const = 0;

protected:
    // dispid: that of one of the methods.
    virtual DispatchResult CallMethod(int dispid, const QVariantList& arguments) = 0;

private:
    int callingPage = 0;
};

// The conversions of arguments. A missing value (undefined) is an empty text, 0 or false; null, a list and an
// object are nothing that could be converted. Nothing if there is no conversion.
std::optional<QString> TextArgument(const QVariant& argument);
std::optional<int32_t> NumberArgument(const QVariant& argument);
std::optional<bool> FlagArgument(const QVariant& argument);
// Nothing if one of them can't be converted.
std::optional<QStringList> TextArguments(const QVariantList& arguments);
