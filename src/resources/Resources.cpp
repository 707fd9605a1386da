#include "resources/Resources.h"

#include <QResource>

// A static library's resources are registered by hand; the macro may not stand inside a namespace.
static void RegisterResources()
{
    Q_INIT_RESOURCE(resources);
}

QByteArray FindResource(const QString& name, const QString& type)
{
    static const bool registered = (RegisterResources(), true);
    Q_UNUSED(registered);
    const QResource resource(QStringLiteral(":/vistorama/%1.%2").arg(name.toLower(), type.toLower()));
    return resource.isValid() ? resource.uncompressedData() : QByteArray();
}

QByteArray FindPage(const QString& name, std::initializer_list<StringId> words)
{
    QByteArray page = FindResource(name, QStringLiteral("html"));
    for (const StringId id : words) {
        page.replace('>' + EnglishText(id).toUtf8(), '>' + Text(id).toHtmlEscaped().toUtf8());
    }
    return page;
}
