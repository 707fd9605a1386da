#pragma once

#include <chrono>
#include <functional>

#include "ftpengine/destinations/Keyring.h"

struct _GCancellable;

// The keyring of the user's desktop, over the session bus (freedesktop.org, "Secret Service API"). There is
// none without a session bus, and a locked one counts as none: it would ask for its password in the middle of
// something else. A service that doesn't answer is asked no more; whatever was asked of it goes on alone.
class CSystemKeyring final : public CKeyring {
public:
    // patience: for each question.
    explicit CSystemKeyring(std::chrono::milliseconds patience = std::chrono::seconds(3)) : patience(patience)
    {}

    bool Store(const Item& item) override;
    std::optional<CSecretText> Find(const QString& name) override;
    bool Remove(const QString& name) override;

private:
    // Runs the question on a thread of its own. False if there is no keyring, or it hasn't answered.
    bool Ask(const std::function<void(_GCancellable*)>& ask);

    const std::chrono::milliseconds patience;
    bool isSilent = false;
};
