#pragma once

#include <functional>
#include <memory>

#include <QCoreApplication>
#include <QMetaObject>

#include "common/MessageTarget.h"
#include "common/ThreadSanitizer.h"

// Brings the messages of other threads to the event loop of the program's first thread, in their order. Owned
// by the window or program that wants them, which drops the last reference on that thread; messages that are
// under way then are dropped.
template <class Message>
class CEventLoopTarget final : public CMessageTarget<Message>,
                               public std::enable_shared_from_this<CEventLoopTarget<Message>> {
public:
    using Handler = std::function<void(const Message& message)>;

    static std::shared_ptr<CEventLoopTarget> Create(Handler handler)
    {
        return std::shared_ptr<CEventLoopTarget>(new CEventLoopTarget(std::move(handler)));
    }

    void Post(Message message) override
    {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [weak = this->weak_from_this(), message = std::move(message), handOver = CHandOver()] {
                const CHandOver::CTaken taken;
                if (const auto self = weak.lock()) {
                    self->handler(message);
                }
            },
            Qt::QueuedConnection);
    }

private:
    explicit CEventLoopTarget(Handler handler) : handler(std::move(handler)) {}

    const Handler handler;
};
