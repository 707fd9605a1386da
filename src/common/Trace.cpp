#include "common/Trace.h"

namespace {

std::function<void(const QString&)>& Sink()
{
    static std::function<void(const QString&)> sink;
    return sink;
}

} // namespace

void SetTraceSink(std::function<void(const QString& line)> sink)
{
    Sink() = std::move(sink);
}

void Trace(const QString& text)
{
    if (Sink()) {
        Sink()(text);
    }
}

CTraceScope::CTraceScope(const char* name) : name(name)
{
    Trace(QStringLiteral("Entering ") + QLatin1String(name));
}

CTraceScope::~CTraceScope()
{
    Trace(QStringLiteral("Exiting ") + QLatin1String(name));
}
