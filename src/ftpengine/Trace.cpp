#include "ftpengine/Trace.h"

#include <chrono>
#include <cstdio>
#include <fcntl.h>

#include "common/Descriptor.h"

void TraceNumber(const char* text, int number)
{
    Trace(QStringLiteral("\"%1\"%2").arg(QLatin1String(text)).arg(number));
}

void ThrowTraced(const char* text, int number)
{
    TraceNumber(text, number);
    throw number;
}

void ThrowTracedLiterally(const char* text, int number)
{
    Trace(QStringLiteral("_T(\"%1\")").arg(QLatin1String(text)));
    throw number;
}

TraceScope::TraceScope(const QString& text) : text(text)
{
    Trace(text + QStringLiteral(" entering"));
}

TraceScope::~TraceScope()
{
    Trace(text + QStringLiteral(" exiting"));
}

CTrace::CTrace(const CSettingsStore& store) : store(store) {}

void CTrace::Trace(const QString& text)
{
    const std::lock_guard guard(lock);
    if (!on) {
        constexpr auto user = CSettingsStore::Scope::User;
        if (!store.ListSubKeys(user, QStringLiteral("NimbleXfer")).contains(QStringLiteral("Trace"))) {
            return;
        }
        on = true;
        const QString path =
            store.Read(user, QStringLiteral("NimbleXfer/Trace"), QStringLiteral("File")).value_or(QString());
        if (!path.isEmpty()) {
            file.setFileName(path);
            // It tells what the user does, and with which servers; one that is there keeps its rights.
            const CDescriptor made(
                ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
            file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
        }
    }
    using namespace std::chrono;
    const auto ticks = duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
    const QByteArray line = QStringLiteral("%1\t%2").arg(ticks).arg(text).toUtf8();
    std::fputs(line.constData(), stderr);
    if (!text.endsWith(QLatin1Char('\n'))) {
        std::fputs("\r\n", stderr);
    }
    if (file.isOpen()) {
        const QString fileLine = text + QStringLiteral("\r\n");
        file.write(reinterpret_cast<const char*>(fileLine.utf16()),
                   fileLine.size() * qsizetype(sizeof(char16_t)));
    }
}

void InstallTrace(std::shared_ptr<const CSettingsStore> store)
{
    auto trace = std::make_shared<CTrace>(*store);
    SetTraceSink(
        [store = std::move(store), trace = std::move(trace)](const QString& line) { trace->Trace(line); });
}
