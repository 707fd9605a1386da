#include "Workshop.h"

#include <QFile>

#include "Check.h"
#include "common/FileSystem.h"

namespace {

const char definition[] = R"(<template name="Plain" folder="Plain" group="standard">)"
                          R"(<page file="index.html"/><page file="picture.html" multipage="1"/></template>)";
const char indexPage[] =
    R"(<html><%pageheader%><%picture id="a" width="10" height="10" href="picture.html"%></html>)";
const char picturePage[] =
    R"(<html><%pageheader%><%picture id="a" width="20" height="20" href="index.html"%></html>)";

} // namespace

CWorkshop::CWorkshop()
    : settings(CreateIniSettings(Path(QStringLiteral("settings")), Path(QStringLiteral("machine")))),
      tempFolder(directory.path() + QLatin1Char('/'))
{
    MakeDirectoryPath(Path(QStringLiteral("photos")));
    WriteProgram();
}

void CWorkshop::WriteProgram() const
{
    Write(QStringLiteral("program/Templates/plain.xml"), definition);
    Write(QStringLiteral("program/Templates/Plain/index.html"), indexPage);
    Write(QStringLiteral("program/Templates/Plain/picture.html"), picturePage);
    Write(QStringLiteral("program/Styles/plain.xml"),
          R"(<style name="Plain" folder="Plain" css="style.css" group="standard"/>)");
    Write(QStringLiteral("program/Styles/Plain/style.css"), "body {}");
    Write(QStringLiteral("program/Styles/Common/base.css"), "a {}");
}

QString CWorkshop::Write(const QString& name, std::string_view bytes) const
{
    const QString path = Path(name);
    MakeDirectoryPath(path.left(path.lastIndexOf(QLatin1Char('/'))));
    QFile file(path);
    Check(file.open(QIODevice::WriteOnly), "the workshop can be written to");
    file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    return path;
}

QByteArray CWorkshop::Read(const QString& name) const
{
    QFile file(Path(name));
    Check(file.open(QIODevice::ReadOnly), "what was written can be read");
    return file.readAll();
}

CProjectEnvironment CWorkshop::GetEnvironment()
{
    return {.programFolder = Path(QStringLiteral("program/")),
            .picturesFolder = Path(QStringLiteral("photos")),
            .settings = settings.get(),
            .tempFolder = &tempFolder};
}

void CheckTexts(const CExceptionBase& failure)
{
    Check(!failure.GetCaption().isEmpty(), "a failure says what happened");
    Check(!failure.GetDescription().isEmpty(), "a failure says why");
}
