#include "common/Trace.h"

#include <memory>
#include <mutex>

namespace {

using Sink = std::function<void(const QString& line)>;

// Where the lines go. A worker that was abandoned may trace while another sink is set, so that each line
// keeps its sink alive; and it may do so when the program has ended, so that this is never destroyed.
struct SinkPlace {
    std::mutex lock;
    std::shared_ptr<const Sink> sink;
};

SinkPlace& Place()
{
    static auto* const place = new SinkPlace;
    return *place;
}

} // namespace

void SetTraceSink(std::function<void(const QString& line)> sink)
{
    auto next = sink ? std::make_shared<const Sink>(std::move(sink)) : nullptr;
    SinkPlace& place = Place();
    const std::lock_guard guard(place.lock);
    place.sink.swap(next);
}

void Trace(const QString& text)
{
    SinkPlace& place = Place();
    std::shared_ptr<const Sink> sink;
    {
        const std::lock_guard guard(place.lock);
        sink = place.sink;
    }
    if (sink != nullptr) {
        (*sink)(text);
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
