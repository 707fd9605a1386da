#include "ftpengine/secrets/SystemKeyring.h"

#include <libsecret/secret.h>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include <QFile>

#include "common/ProgramIdentity.h"
#include "common/Trace.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/secrets/SecretText.h"

namespace {

template <class Type>
struct Unreference {
    void operator()(Type* object) const { g_object_unref(object); }
};
template <class Type>
using Reference = std::unique_ptr<Type, Unreference<Type>>;

const char* const nameAttribute = "destination";

// Finds its items again as long as the program has this name.
const SecretSchema& GetSchema()
{
    // Never destroyed: a thread that was abandoned may still be at work when the program ends.
    static const QByteArray& name = *new QByteArray(GetApplicationId().toUtf8());
    static const SecretSchema schema = [] {
        SecretSchema made{};
        made.name = name.constData();
        made.attributes[0] = {nameAttribute, SECRET_SCHEMA_ATTRIBUTE_STRING};
        return made;
    }();
    return schema;
}

// The library would start a bus of its own where a display is.
bool HasSessionBus()
{
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

// False, with a trace, for a failed call. Takes the error.
bool Succeeds(GError* error)
{
    if (error == nullptr) {
        return true;
    }
    Trace(QStringLiteral("CSystemKeyring: ") + QString::fromUtf8(error->message));
    g_error_free(error);
    return false;
}

// Whether new items can go into the usual collection now.
bool IsUnlocked(GCancellable* cancellable)
{
    GError* error = nullptr;
    const Reference<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, &error));
    if (!Succeeds(std::exchange(error, nullptr)) || !bus) {
        return false;
    }
    // By default the end of the bus, as at the end of the desktop's session, would end this program as well.
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    const Reference<SecretService> service(secret_service_get_sync(SECRET_SERVICE_NONE, cancellable, &error));
    if (!Succeeds(std::exchange(error, nullptr)) || !service) {
        return false;
    }
    const Reference<SecretCollection> collection(secret_collection_for_alias_sync(
        service.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, cancellable, &error));
    return Succeeds(error) && collection && secret_collection_get_locked(collection.get()) == FALSE;
}

// What a question is asked with and what has come of it: shared with its thread, which may outlive the wait.
struct Question {
    std::function<void(GCancellable*)> ask;
    Reference<GCancellable> cancellable{g_cancellable_new()};
    CEvent answered;
    bool hasKeyring = false;
};

} // namespace

bool CSystemKeyring::Ask(const std::function<void(_GCancellable*)>& ask)
{
    if (isSilent || !HasSessionBus()) {
        return false;
    }
    try {
        const auto question = std::make_shared<Question>();
        question->ask = ask;
        std::thread([question] {
            question->hasKeyring = IsUnlocked(question->cancellable.get());
            if (question->hasKeyring) {
                question->ask(question->cancellable.get());
            }
            question->answered.Set();
        }).detach();
        if (question->answered.Wait(patience)) {
            return question->hasKeyring;
        }
        isSilent = true;
        g_cancellable_cancel(question->cancellable.get());
    } catch (const std::system_error&) {
        // No thread left: the program's own store does without.
    } catch (int) {
        // No descriptor left.
    }
    return false;
}

bool CSystemKeyring::Store(const Item& item)
{
    const auto isStored = std::make_shared<bool>(false);
    const CSecretText secret = item.secret;
    const QByteArray name = item.name.toUtf8();
    const QByteArray label = item.label.toUtf8();
    const bool isAsked = Ask([=](GCancellable* cancellable) {
        GError* error = nullptr;
        *isStored = secret_password_store_sync(&GetSchema(), SECRET_COLLECTION_DEFAULT, label.constData(),
                                               secret.GetBytes(), cancellable, &error, nameAttribute,
                                               name.constData(), nullptr) != FALSE;
        Succeeds(error);
    });
    return isAsked && *isStored;
}

std::optional<CSecretText> CSystemKeyring::Find(const QString& itemName)
{
    const auto found = std::make_shared<std::optional<CSecretText>>();
    const QByteArray name = itemName.toUtf8();
    const bool isAsked = Ask([=](GCancellable* cancellable) {
        GError* error = nullptr;
        char* const secret = secret_password_lookup_nonpageable_sync(
            &GetSchema(), cancellable, &error, nameAttribute, name.constData(), nullptr);
        if (secret != nullptr) {
            QString text = QString::fromUtf8(secret);
            secret_password_free(secret);
            *found = text;
            WipeText(text);
        }
        Succeeds(error);
    });
    return isAsked ? *found : std::nullopt;
}

bool CSystemKeyring::Remove(const QString& itemName)
{
    const auto isGone = std::make_shared<bool>(false);
    const QByteArray name = itemName.toUtf8();
    const bool isAsked = Ask([=](GCancellable* cancellable) {
        GError* error = nullptr;
        secret_password_clear_sync(&GetSchema(), cancellable, &error, nameAttribute, name.constData(),
                                   nullptr);
        *isGone = Succeeds(error); // also if there was none
    });
    return isAsked && *isGone;
}
