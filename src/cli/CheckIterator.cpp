#include "cli/CheckIterator.h"

#include "common/Text.h"
#include "resources/StringTable.h"

bool CCheckIterator::GetVariable(const QString& object, const QString& name, CVariant& out)
{
    const QString lowered = Lower(object);
    if (lowered == QStringLiteral("page")) {
        return GetPageVariable(Lower(name), out);
    }
    if (ids.contains(lowered)) {
        return false;
    }
    if (lowered == QStringLiteral("gallery")) {
        if (EqualsIgnoreCase(name, QStringLiteral("template_directory"))) {
            out = CVariant(layoutFolder);
        }
        return true;
    }
    if (lowered == QStringLiteral("content") || lowered == QStringLiteral("advertisement")) {
        return true;
    }
    out = CVariant(Text(StringId::InvalidObjectName, object));
    return false;
}

bool CCheckIterator::GetPageVariable(const QString& name, CVariant& out) const
{
    if (name == QStringLiteral("index")) {
        out = CVariant(0);
    } else if (name == QStringLiteral("number")) {
        out = CVariant(1);
    } else if (const auto variable = pageVariables.find(name); variable != pageVariables.end()) {
        out = variable->second;
    }
    return true;
}

void CCheckIterator::SetVariable(const QString& object, const QString& name, const CVariant& value)
{
    if (EqualsIgnoreCase(object, QStringLiteral("page"))) {
        pageVariables[Lower(name)] = value;
    }
}

void CCheckIterator::BindPicture(const QString& id)
{
    if (ids.insert(Lower(id)).second) {
        ownIds.insert(Lower(id));
    }
}

void CCheckIterator::BindPictureReference(const QString& id, int32_t, int32_t)
{
    ids.insert(Lower(id));
}
