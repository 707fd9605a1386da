#pragma once

#include <cstdint>

#include <QString>

#include "common/Text.h"
#include "common/Variant.h"

// One entry of a gallery's content: a picture file, or a link to a child gallery. Layouts can't tell the two
// apart. Owned by the CPictureList that holds it; used on the thread of that list.
class CPictureInfo {
public:
    virtual ~CPictureInfo() = default;

    // The file to show. It exists when this returns, unless the user has taken it away.
    virtual QString GetPath() = 0;
    // Empty for a record without a thumbnail of its own.
    virtual QString GetThumbnailPath() { return QString(); }
    virtual DateValue GetDate() = 0;
    // A property or variable, by a name without regard to case. False if there is none, and for a null name.
    virtual bool GetVariable(const QString& name, CVariant& out) = 0;
    virtual void SetVariable(const QString& name, const CVariant& value) = 0;
    // Quarter turns clockwise, 0 to 3.
    virtual int32_t GetAngle() const = 0;
    virtual void SetAngle(int32_t angle) = 0;
    virtual const CVariableMap& GetVariables() const = 0;
    virtual CVariableMap& GetVariables() = 0;

    // The lower-cased path under which a list keeps the record. Unlike GetPath it never makes a file.
    virtual QString GetKey() { return Lower(GetPath()); }
};
