#include "common/Trace.h"

#include <cstdio>
#include <fcntl.h>

#include "common/Descriptor.h"

namespace {

using Sink = std::function<void(const QString& line)>;

QString TraceKey()
{
    return QStringLiteral("NimbleXfer/Trace");
}

// Where the lines go. A worker that was abandoned may trace while another sink is set, so that each line
// keeps its sink alive; and it may do so when the program has ended, so that this is never destroyed.
struct SinkPlace {
    CMutex mutex;
    std::shared_ptr<const Sink> sink VISTORAMA_GUARDED_BY(mutex);
};

SinkPlace& Place()
{
    static auto* const place = new SinkPlace;
    return *place;
}

} // namespace

void Trace(const QString& text)
{
    SinkPlace& place = Place();
    std::shared_ptr<const Sink> sink;
    {
        const CMutexLock lock(place.mutex);
        sink = place.sink;
    }
    if (sink != nullptr) {
        (*sink)(text);
    }
}

TraceScope::TraceScope(const QString& text) : text(text)
{
    Trace(text + QStringLiteral(" entering"));
}

TraceScope::~TraceScope()
{
    Trace(text + QStringLiteral(" exiting"));
}

void SetTraceSink(std::function<void(const QString& line)> sink)
{
    auto next = sink ? std::make_shared<const Sink>(std::move(sink)) : nullptr;
    SinkPlace& place = Place();
    const CMutexLock lock(place.mutex);
    place.sink.swap(next);
}

CTrace::CTrace(const CSettingsStore& store, std::chrono::milliseconds interval)
    : store(store), interval(interval)
{}

void CTrace::Trace(const QString& text)
{
    const CMutexLock lock(mutex);
    if (!IsTurnedOn()) {
        return;
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

bool CTrace::IsTurnedOn()
{
    const auto now = std::chrono::steady_clock::now();
    if (!on && (!lookedFor || now - *lookedFor >= interval)) {
        lookedFor = now;
        constexpr auto user = CSettingsStore::Scope::User;
        if (store.ListSubKeys(user, QStringLiteral("NimbleXfer")).contains(QStringLiteral("Trace"))) {
            TurnOn();
        }
    }
    return on;
}

void CTrace::TurnOn()
{
    on = true;
    const QString path =
        store.Read(CSettingsStore::Scope::User, TraceKey(), QStringLiteral("File")).value_or(QString());
    if (path.isEmpty()) {
        return;
    }
    file.setFileName(path);
    // It tells what the user does, and with which servers; one that is there keeps its rights.
    const CDescriptor made(
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
}

void InstallTrace(std::shared_ptr<const CSettingsStore> store)
{
    auto trace = std::make_shared<CTrace>(*store);
    SetTraceSink(
        [store = std::move(store), trace = std::move(trace)](const QString& line) { trace->Trace(line); });
}
