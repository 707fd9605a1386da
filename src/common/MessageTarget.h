#pragma once

#include <functional>
#include <memory>

#include <QCoreApplication>
#include <QMetaObject>

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

// A receiver of messages from other threads. Messages are values, owned by the receiver once posted, and
// arrive in the order in which one sender posted them. Post returns at once and may be called on any thread.
template <class Message>
class CMessageTarget {
public:
    virtual ~CMessageTarget() = default;
    virtual void Post(Message message) = 0;
};

// Posts to a target that may be gone; then the message is dropped.
template <class Message>
void PostTo(const std::weak_ptr<CMessageTarget<Message>>& target, Message message)
{
    if (const auto receiver = target.lock()) {
        receiver->Post(std::move(message));
    }
}

// Tells the thread sanitizer what it can't see: that something goes from one thread to another through a
// library that was not built for it, such as Qt's event loop. Nothing in a usual build. Stands last in what
// is handed over, such as the captures of a function that is called by another thread's event loop: when it
// has been copied or moved there, all before it is in its place; when it goes, whichever thread lets go of it
// last, the other one is through with them.
class CHandOver {
public:
    CHandOver() = default;
    CHandOver(const CHandOver&) noexcept { Release(); }
    CHandOver(CHandOver&&) noexcept { Release(); }
    CHandOver& operator=(const CHandOver&) = delete;
    ~CHandOver() { Acquire(); }

    // On the thread that takes over, as long as it looks at anything of it.
    class CTaken {
    public:
        CTaken() { Acquire(); }
        CTaken(const CTaken&) = delete;
        CTaken& operator=(const CTaken&) = delete;
        ~CTaken() { Release(); }
    };

private:
    static void Release()
    {
#ifdef __SANITIZE_THREAD__
        __tsan_release(&place);
#endif
    }

    static void Acquire()
    {
#ifdef __SANITIZE_THREAD__
        __tsan_acquire(&place);
#endif
    }

    static inline char place = 0; // nothing but an address
};

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
