#include "shell/panes/pages/FailurePage.h"

#include "common/Exceptions.h"
#include "common/Text.h"
#include "document/galleries/Gallery.h"
#include "resources/Resources.h"
#include "template/parser/ErrorPage.h"

namespace {

std::string Paragraph(const QString& text)
{
    return Narrow(QStringLiteral("<p>%1</p>\n").arg(text.toHtmlEscaped()));
}

} // namespace

std::string BuildTemplateErrorPage(const CTemplateParsingException& error, CGallery& gallery)
{
    const CGalleryTemplate* const layout = gallery.GetLayout().GetTemplate();
    const QString page = gallery.GetLayout().GetTemplatePage();
    std::string text = BuildErrorPage(error, layout ? layout->GetPageFilePath(page) : page);
    // The page is text already, so nobody else gives its head element the scripts that every page has; and
    // its colour "InfoBackground" is none that today's browsers know.
    const std::string header = "<%pageheader %>";
    const size_t place = text.find(header);
    if (place != std::string::npos) {
        const QByteArray script = FindResource(QStringLiteral("contextmenu"), QStringLiteral("js"));
        text.replace(place, header.size(),
                     "<style>td[bgcolor=InfoBackground] { background: #ffffe1; color: black; }</style>\r\n"
                     "<script type=\"text/javascript\" >" +
                         script.toStdString() + "</script>");
    }
    return text;
}

std::string BuildFailurePage(const CExceptionBase& failure)
{
    return "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"></head>\n"
           "<body style=\"font-family:sans-serif;margin:2em\">\n" +
           Paragraph(Text(StringId::PageNotGenerated)) + "<blockquote>\n" + Paragraph(failure.GetCaption()) +
           Paragraph(failure.GetDescription()) + Paragraph(failure.GetAdvice()) +
           "</blockquote>\n</body></html>\n";
}
