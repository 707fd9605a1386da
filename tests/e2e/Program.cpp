#include "Program.h"

#include <gtest/gtest.h>

#include "common/FileSystem.h"
#include "imaging/Image.h"

QMap<QString, QString> ProgramResult::GetFailure() const
{
    const QStringList lines = errors.split(QLatin1Char('\n'));
    const QStringList names{QStringLiteral("caption"), QStringLiteral("description"),
                            QStringLiteral("advice")};
    QMap<QString, QString> texts;
    if (lines.size() != 4 || !lines.last().isEmpty()) {
        return texts;
    }
    for (int i = 0; i < 3; ++i) {
        const QString start = names[i] + QStringLiteral(": ");
        if (!lines[i].startsWith(start)) {
            return {};
        }
        texts[names[i]] = lines[i].mid(start.size());
    }
    return texts;
}

CProgram::CProgram() : dataFolder(QStringLiteral(DATA_FOLDER))
{
    MakeDirectoryPath(Path(QStringLiteral("photos")));
}

void CProgram::UseOwnData()
{
    dataFolder = Path(QStringLiteral("data"));
    scratch.Write(QStringLiteral("data/Styles/plain.xml"),
                  "<style css=\"style.css\" name=\"Plain\" folder=\"Plain\" default=\"1\"/>");
    scratch.Write(QStringLiteral("data/Styles/Plain/style.css"), "body {}");
    scratch.Write(QStringLiteral("data/Styles/Common/base.css"), "a {}");
}

void CProgram::WriteLayout(const QByteArray& page, const QByteArray& pages)
{
    UseOwnData();
    scratch.Write(QStringLiteral("data/Templates/own.xml"),
                  "<template name=\"Own\" folder=\"Own\">" + pages + "</template>");
    scratch.Write(QStringLiteral("data/Templates/Own/index.html"), page);
}

QString CProgram::WritePicture(const QString& name, QSize size) const
{
    QByteArray bytes;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            bytes += static_cast<char>(x * 255 / size.width());
            bytes += static_cast<char>(y * 255 / size.height());
            bytes += static_cast<char>((x * y) % 255);
            bytes += '\xff';
        }
    }
    const QString path = Path(QStringLiteral("photos/") + name);
    const ImageSaveResult result =
        CImage::FromRgba(size, bytes).Save(path, {ImageEncoding::Format::Jpeg, 92});
    EXPECT_EQ(result.status, ImageSaveResult::Status::Saved) << qPrintable(result.reason);
    return path;
}

QString CProgram::WriteProject(const QStringList& pictures) const
{
    QString project = Path(QStringLiteral("trip.gallery"));
    const ProgramResult made = Run(QStringList{QStringLiteral("new"), project} + pictures);
    EXPECT_EQ(made.exitCode, 0) << qPrintable(made.errors);
    return project;
}

QProcessEnvironment CProgram::GetEnvironment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VISTORAMA_DATA"), dataFolder);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), Path(QStringLiteral("config")));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), Path(QStringLiteral("share")));
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), Path(QStringLiteral("cache")));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    // Nothing of a test goes into the keyring of whoever runs it.
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
    environment.insert(QStringLiteral("program"), QStringLiteral(PROGRAM_FILE));
    for (auto variable = variables.begin(); variable != variables.end(); ++variable) {
        environment.insert(variable.key(), variable.value());
    }
    return environment;
}

void CProgram::Start(QProcess& process, const QStringList& arguments) const
{
    process.setProcessEnvironment(GetEnvironment());
    process.setWorkingDirectory(Path(QString()));
    process.start(QStringLiteral(PROGRAM_FILE), arguments);
    ASSERT_TRUE(process.waitForStarted());
}

ProgramResult CProgram::Finish(QProcess& process)
{
    constexpr int patience = 60'000;
    EXPECT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished(patience));
    return {.exitCode = process.exitCode(),
            .crashed = process.exitStatus() == QProcess::CrashExit,
            .output = QString::fromUtf8(process.readAllStandardOutput()),
            .errors = QString::fromUtf8(process.readAllStandardError())};
}

ProgramResult CProgram::Run(const QStringList& arguments) const
{
    QProcess process;
    Start(process, arguments);
    return Finish(process);
}

ProgramResult CProgram::RunInShell(const QString& script, const QStringList& arguments) const
{
    QProcess process;
    process.setProcessEnvironment(GetEnvironment());
    process.setWorkingDirectory(Path(QString()));
    process.start(QStringLiteral("sh"),
                  QStringList{QStringLiteral("-c"), script, QStringLiteral("sh")} + arguments);
    EXPECT_TRUE(process.waitForStarted());
    return Finish(process);
}
