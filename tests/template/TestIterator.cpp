#include "TestIterator.h"

#include "resources/StringTable.h"

namespace {

// False, and out untouched, if nothing was found.
bool Found(const std::optional<CVariant>& value, CVariant& out)
{
    out = value.value_or(out);
    return value.has_value();
}

} // namespace

void CTestIterator::Reset()
{
    bindings.clear();
    boundIds.clear();
    bound.clear();
    cursor = 0;
    referenceCount = 0;
}

QString CTestIterator::GetPicturePath(QString& out)
{
    out = QStringLiteral("photo%1.jpg").arg(CurrentIndex());
    return out;
}

bool CTestIterator::GetPageProperty(int32_t, const QString& name, CVariant& out)
{
    return GetPageVariable(Lower(name), out);
}

bool CTestIterator::GetVariable(const QString& object, const QString& name, CVariant& out)
{
    asked.push_back(object + QLatin1Char('.') + name);
    const QString lowerObject = Lower(object);
    if (lowerObject == QStringLiteral("page")) {
        return GetPageVariable(Lower(name), out);
    }
    if (const auto entry = bindings.find(lowerObject); entry != bindings.end()) {
        return GetPictureVariable(IndexOf(entry->second), Lower(name), out);
    }
    if (lowerObject == QStringLiteral("gallery")) {
        return GetGalleryVariable(name, out);
    }
    out = Text(object.isNull() ? StringId::ObjectNameMissing : StringId::InvalidObjectName, object);
    return false;
}

void CTestIterator::SetVariable(const QString& object, const QString& name, const CVariant& value)
{
    (EqualsIgnoreCase(object, QStringLiteral("page")) ? pages[pageIndex] : gallery).Set(name, value);
}

void CTestIterator::BindPicture(const QString& id)
{
    bound.push_back(id);
    if (Bind(id, {cursor, 0})) {
        ++cursor;
    }
}

void CTestIterator::BindPictureReference(const QString& id, int32_t offset, int32_t modulo)
{
    bound.push_back(QStringLiteral("%1 %2 %3").arg(id).arg(offset).arg(modulo));
    if (Bind(id, {offset, modulo})) {
        ++referenceCount;
    }
}

bool CTestIterator::Bind(const QString& id, Binding binding)
{
    boundIds.push_back(Lower(id));
    return bindings.emplace(Lower(id), binding).second;
}

int32_t CTestIterator::GetPageCount() const
{
    if (forcedPageCount >= 0) {
        return forcedPageCount;
    }
    const int32_t perPage = GetPicturesPerPage();
    return perPage == 0 ? 0 : (pictureCount + perPage - 1) / perPage;
}

QString CTestIterator::GetPageFileName(int32_t page) const
{
    const QString number = page == 0 ? QString() : QString::number(page);
    return QStringLiteral("index") + number + QStringLiteral(".html");
}

bool CTestIterator::IsElementVisible(const QString& name)
{
    askedLayout.push_back(name);
    return !hiddenElements.contains(name);
}

void CTestIterator::SetPageIndex(int32_t page)
{
    pageIndex = page;
    cursor = 0;
}

int32_t CTestIterator::IndexOf(const Binding& binding) const
{
    int32_t index = GetPicturesPerPage() * pageIndex;
    if (binding.modulo != 0) {
        index -= index % binding.modulo;
    }
    return index + binding.offset;
}

int32_t CTestIterator::CurrentIndex() const
{
    if (cursor < 0 || static_cast<size_t>(cursor) >= boundIds.size()) {
        return -1;
    }
    const int32_t index = IndexOf(bindings.at(boundIds[static_cast<size_t>(cursor)]));
    return index < pictureCount ? index : -1;
}

bool CTestIterator::GetPageVariable(const QString& name, CVariant& out)
{
    if (name == QStringLiteral("number")) {
        out = pageIndex + 1;
    } else if (name == QStringLiteral("index")) {
        out = pageIndex;
    } else if (name == QStringLiteral("total_pages_count")) {
        out = GetPageCount();
    } else if (name == QStringLiteral("file_name")) {
        out = GetPageFileName(pageIndex);
    } else {
        const auto variables = pages.find(pageIndex);
        return variables != pages.end() && Found(variables->second.Find(name), out);
    }
    return true;
}

bool CTestIterator::GetGalleryVariable(const QString& name, CVariant& out)
{
    if (echoesGallery) {
        out = QStringLiteral("[%1]").arg(name);
        return true;
    }
    return Found(gallery.Find(name), out);
}

bool CTestIterator::GetPictureVariable(int32_t index, const QString& name, CVariant& out) const
{
    if (index < 0 || index >= pictureCount) {
        return false;
    }
    if (name == QStringLiteral("title")) {
        out = QStringLiteral("Photo %1").arg(index);
    } else if (name == QStringLiteral("index")) {
        out = index;
    } else {
        return false;
    }
    return true;
}
