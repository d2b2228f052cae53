#include "platform/desktop/SecretServiceKeychain.h"

#include <libsecret/secret.h>

#include <functional>
#include <memory>
#include <optional>

namespace lumaphone {

namespace {

const SecretSchema genericPassword = {"dev.lumaphone.GenericPassword", SECRET_SCHEMA_NONE,
    {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING}, {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
        {"address", SECRET_SCHEMA_ATTRIBUTE_STRING}, {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
    0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};

template<typename T> struct Unref
{
    void operator()(T *object) const { g_object_unref(object); }
};
template<typename T> using ObjectPointer = std::unique_ptr<T, Unref<T>>;

struct ItemListFree
{
    void operator()(GList *items) const { g_list_free_full(items, g_object_unref); }
};
using ItemList = std::unique_ptr<GList, ItemListFree>;

struct ValueUnref
{
    void operator()(SecretValue *value) const { secret_value_unref(value); }
};
using Value = std::unique_ptr<SecretValue, ValueUnref>;

struct TableUnref
{
    void operator()(GHashTable *table) const { g_hash_table_unref(table); }
};
using Attributes = std::unique_ptr<GHashTable, TableUnref>;

/// Receives the error of one call.
class Error
{
public:
    ~Error() { g_clear_error(&m_error); }
    Error() = default;
    Error(const Error &) = delete;
    Error &operator=(const Error &) = delete;
    /// Where the call puts it.
    GError **place() { return &m_error; }
    bool isSet() const { return m_error != nullptr; }
    /// Whether the keychain no longer knows us, as after it was started anew. A refusal is not of this kind.
    bool isLostConnection() const
    {
        return m_error
            && (m_error->domain == G_DBUS_ERROR || g_error_matches(m_error, G_IO_ERROR, G_IO_ERROR_DBUS_ERROR)
                || g_error_matches(m_error, G_IO_ERROR, G_IO_ERROR_CLOSED)
                || g_error_matches(m_error, SECRET_ERROR, SECRET_ERROR_NO_SUCH_OBJECT));
    }

private:
    GError *m_error = nullptr;
};

/// Those by which the item is found.
Attributes attributesOf(const KeychainQuery &query)
{
    return Attributes(secret_attributes_build(&genericPassword, "service", query.service.toUtf8().constData(),
        "account", query.account.toUtf8().constData(), nullptr));
}

/// Those that the item has.
Attributes attributesOf(const KeychainQuery &query, const QString &address)
{
    if (address.isEmpty()) {
        return attributesOf(query);
    }
    return Attributes(secret_attributes_build(&genericPassword, "service", query.service.toUtf8().constData(),
        "account", query.account.toUtf8().constData(), "address", address.toUtf8().constData(), nullptr));
}

QString addressOf(SecretItem *item)
{
    const Attributes attributes(secret_item_get_attributes(item));
    const auto *address
        = static_cast<const char *>(attributes ? g_hash_table_lookup(attributes.get(), "address") : nullptr);
    return QString::fromUtf8(address);
}

Value valueOf(const QByteArray &data)
{
    return Value(secret_value_new(data.constData(), data.size(), "text/plain"));
}

enum class Unlocking {
    askTheUser,
    never,
};

} // namespace

/// The way to the service, which one call after another looks up anew.
class SecretServiceKeychain::Connection
{
public:
    using Operation = std::function<KeychainStatus(SecretService *service, Error &error)>;

    /// Runs one operation, and once more over a new connection if the old one turns out to be dead.
    KeychainStatus run(const Operation &operation) const
    {
        for (const bool isLastTry : {false, true}) {
            Error error;
            const auto service = connected(error);
            const KeychainStatus status = service ? operation(service.get(), error) : KeychainStatus::other;
            if (isLastTry || !error.isLostConnection()) {
                return error.isSet() ? KeychainStatus::other : status;
            }
            secret_service_disconnect();
        }
        Q_UNREACHABLE();
    }

    /// Runs `use` on every unlocked item that the query names, until one sets the error.
    KeychainStatus withItems(SecretService *service, Error &error, const KeychainQuery &query,
        Unlocking unlocking, const std::function<void(SecretItem *)> &use) const
    {
        const int unlock = unlocking == Unlocking::askTheUser ? SECRET_SEARCH_UNLOCK : 0;
        const auto flags = static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | unlock);
        const ItemList items(secret_service_search_sync(
            service, &genericPassword, attributesOf(query).get(), flags, whenAbandoned(), error.place()));
        if (error.isSet()) {
            return KeychainStatus::other;
        }
        if (!items) {
            return KeychainStatus::itemNotFound;
        }
        KeychainStatus status
            = unlocking == Unlocking::never ? KeychainStatus::locked : KeychainStatus::other;
        for (const GList *link = items.get(); link && !error.isSet(); link = link->next) {
            SecretItem *item = SECRET_ITEM(link->data);
            if (!secret_item_get_locked(item)) {
                use(item);
                status = KeychainStatus::success;
            }
        }
        return status;
    }

    KeychainReading read(const KeychainQuery &query, Unlocking unlocking) const;
    /// Of the first item that read() reads.
    QString addressNow(SecretService *service, Error &error, const KeychainQuery &query) const;
    void replace(
        SecretItem *item, const KeychainQuery &query, const KeychainSecret &secret, Error &error) const;

    GCancellable *whenAbandoned() const { return m_abandonment.get(); }

private:
    ObjectPointer<SecretService> connected(Error &error) const
    {
        const ObjectPointer<GDBusConnection> bus(
            g_bus_get_sync(G_BUS_TYPE_SESSION, whenAbandoned(), error.place()));
        if (!bus) {
            return nullptr;
        }
        // By default the loss of the bus would end this process.
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
        return ObjectPointer<SecretService>(
            secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, whenAbandoned(), error.place()));
    }

    const ObjectPointer<GCancellable> m_abandonment {g_cancellable_new()};
};

KeychainReading SecretServiceKeychain::Connection::read(const KeychainQuery &query, Unlocking unlocking) const
{
    KeychainReading reading;
    reading.status = run([&](SecretService *service, Error &error) {
        bool isRead = false;
        const auto readFirst = [&](SecretItem *item) {
            if (isRead || !secret_item_load_secret_sync(item, whenAbandoned(), error.place())) {
                return;
            }
            const Value value(secret_item_get_secret(item));
            gsize length = 0;
            const gchar *bytes = value ? secret_value_get(value.get(), &length) : nullptr;
            if (bytes) {
                reading.secret = {QByteArray(bytes, static_cast<qsizetype>(length)), addressOf(item)};
                isRead = true;
            }
        };
        const KeychainStatus found = withItems(service, error, query, unlocking, readFirst);
        if (isRead && addressNow(service, error, query) != reading.secret.address) {
            reading.secret.address = noKeychainAddress; // it was replaced just now
        }
        return found == KeychainStatus::success && !isRead ? KeychainStatus::other : found;
    });
    if (reading.status != KeychainStatus::success) {
        reading.secret = {};
    }
    return reading;
}

QString SecretServiceKeychain::Connection::addressNow(
    SecretService *service, Error &error, const KeychainQuery &query) const
{
    std::optional<QString> address;
    withItems(service, error, query, Unlocking::never, [&address](SecretItem *item) {
        if (!address) {
            address = addressOf(item);
        }
    });
    return address.value_or(noKeychainAddress);
}

void SecretServiceKeychain::Connection::replace(
    SecretItem *item, const KeychainQuery &query, const KeychainSecret &secret, Error &error) const
{
    const auto setAddress = [&](const QString &address) {
        return secret_item_set_attributes_sync(
            item, &genericPassword, attributesOf(query, address).get(), whenAbandoned(), error.place());
    };
    // Whoever reads meanwhile, or after a failure halfway, must not take the one's secret for the other's.
    const bool isForAnother = addressOf(item) != secret.address;
    if (isForAnother && !setAddress(noKeychainAddress)) {
        return;
    }
    const Value value = valueOf(secret.data);
    if (secret_item_set_secret_sync(item, value.get(), whenAbandoned(), error.place()) && isForAnother) {
        setAddress(secret.address);
    }
}

SecretServiceKeychain::SecretServiceKeychain()
    : m_connection(std::make_unique<Connection>())
{
}

SecretServiceKeychain::~SecretServiceKeychain() = default;

KeychainReading SecretServiceKeychain::copyMatching(const KeychainQuery &query)
{
    return m_connection->read(query, Unlocking::askTheUser);
}

KeychainReading SecretServiceKeychain::peek(const KeychainQuery &query)
{
    return m_connection->read(query, Unlocking::never);
}

KeychainStatus SecretServiceKeychain::update(const KeychainQuery &query, const KeychainSecret &secret)
{
    return m_connection->run([&](SecretService *service, Error &error) {
        return m_connection->withItems(service, error, query, Unlocking::askTheUser,
            [&](SecretItem *item) { m_connection->replace(item, query, secret, error); });
    });
}

KeychainStatus SecretServiceKeychain::add(const KeychainQuery &query, const KeychainSecret &secret)
{
    const Value value = valueOf(secret.data);
    return m_connection->run([&](SecretService *service, Error &error) {
        const bool isStored = secret_service_store_sync(service, &genericPassword,
            attributesOf(query, secret.address).get(), SECRET_COLLECTION_DEFAULT,
            query.service.toUtf8().constData(), value.get(), m_connection->whenAbandoned(), error.place());
        return isStored ? KeychainStatus::success : KeychainStatus::other;
    });
}

KeychainStatus SecretServiceKeychain::remove(const KeychainQuery &query)
{
    return m_connection->run([&](SecretService *service, Error &error) {
        return m_connection->withItems(service, error, query, Unlocking::askTheUser, [&](SecretItem *item) {
            secret_item_delete_sync(item, m_connection->whenAbandoned(), error.place());
        });
    });
}

void SecretServiceKeychain::abandon()
{
    g_cancellable_cancel(m_connection->whenAbandoned());
}

} // namespace lumaphone
