#pragma once

#include <functional>
#include <memory>
#include <mutex>

#include <QMetaObject>
#include <QObject>

#include "common/MessageTarget.h"

// Brings the messages of other threads to the screen's thread: each is handled from the event loop, in the
// order of its sender, and none after this object has gone. Owned by the window that takes the messages; made
// and destroyed on the screen's thread, also by its own handler.
template <class Message>
class CMessageReceiver {
public:
    using Handler = std::function<void(const Message&)>;

    // context: outlives this object.
    CMessageReceiver(QObject& context, Handler handler)
        : target(std::make_shared<CTarget>(context, std::move(handler)))
    {}
    ~CMessageReceiver() { target->Close(); }
    CMessageReceiver(const CMessageReceiver&) = delete;
    CMessageReceiver& operator=(const CMessageReceiver&) = delete;

    std::weak_ptr<CMessageTarget<Message>> GetTarget() const { return target; }

private:
    class CTarget final : public CMessageTarget<Message>, public std::enable_shared_from_this<CTarget> {
    public:
        CTarget(QObject& context, Handler handler) : handler(std::move(handler)), context(&context) {}

        void Post(Message message) override
        {
            const std::lock_guard guard(lock);
            if (context) {
                QMetaObject::invokeMethod(
                    context,
                    [self = this->shared_from_this(), message = std::move(message)] {
                        self->Handle(message);
                    },
                    Qt::QueuedConnection);
            }
        }

        void Close()
        {
            const std::lock_guard guard(lock);
            context = nullptr;
        }

    private:
        // Only this thread closes, so nothing changes between the look and the call.
        void Handle(const Message& message)
        {
            if (context) {
                handler(message);
            }
        }

        const Handler handler;
        std::mutex lock;
        QObject* context; // written under lock, by the screen's thread alone
    };

    const std::shared_ptr<CTarget> target;
};
