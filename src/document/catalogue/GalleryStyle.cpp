#include "document/catalogue/GalleryStyle.h"

#include "common/xmldomutils.h"
#include "document/catalogue/DefinitionElement.h"

CGalleryStyle::CGalleryStyle(const QString& definitionPath)
{
    const auto document = LoadDocument(definitionPath);
    const CXmlElement element = FindDefinition(*document, "style");
    css = GetAttributeText(element, "css").GetString();
    name = GetAttributeText(element, "name").GetString();
    folder = GetAttributeText(element, "folder").GetString();
    group = GetAttributeText(element, "group").GetString();
    isDefault = GetAttributeLong(element, "default") != 0;
    directory = DefinitionSubfolder(definitionPath, folder);
}
