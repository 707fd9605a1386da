#pragma once

#include <memory>

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
