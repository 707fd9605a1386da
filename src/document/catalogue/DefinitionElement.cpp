#include "document/catalogue/DefinitionElement.h"

#include "common/FileSystem.h"
#include "template/parser/TemplateParsingException.h"

CXmlElement FindDefinition(CXmlDocument& document, const char* tag)
{
    const std::vector<CXmlElement> found = document.FindAll(tag);
    if (found.empty()) {
        throw TemplateError(Text(StringId::TemplateElementNotFound, tag));
    }
    return found.front();
}

QString DefinitionSubfolder(const QString& definitionPath, const QString& subfolder)
{
    QString native = subfolder;
    native.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return ExtractFolder(definitionPath) + native;
}
