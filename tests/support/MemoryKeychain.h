#pragma once

#include "platform/KeychainServices.h"

#include <QStringList>

#include <algorithm>
#include <functional>
#include <optional>
#include <vector>

namespace lumaphone::test {

/// A keychain that lives as long as the test and remembers how it was used. One thread at a time.
class MemoryKeychain final : public KeychainServices
{
public:
    struct Item
    {
        KeychainQuery query;
        QByteArray data;
        QString address = {};
    };

    KeychainReading copyMatching(const KeychainQuery &query) override
    {
        ask();
        return peek(query);
    }
    KeychainReading peek(const KeychainQuery &query) override
    {
        const KeychainStatus status = begin("copyMatching", query);
        if (status != KeychainStatus::success) {
            return {status};
        }
        const auto item = find(query);
        return {status, {item->data, item->address}};
    }
    KeychainStatus update(const KeychainQuery &query, const KeychainSecret &secret) override
    {
        ask();
        const KeychainStatus status = begin("update", query);
        if (status == KeychainStatus::success) {
            *find(query) = {query, secret.data, secret.address};
        }
        return status;
    }
    KeychainStatus add(const KeychainQuery &query, const KeychainSecret &secret) override
    {
        calls.append(QStringLiteral("add"));
        ask();
        if (failure) {
            return *failure;
        }
        items.push_back({query, secret.data, secret.address});
        return KeychainStatus::success;
    }
    KeychainStatus remove(const KeychainQuery &query) override
    {
        ask();
        const KeychainStatus status = begin("remove", query);
        if (status == KeychainStatus::success) {
            items.erase(find(query));
        }
        return status;
    }

    void abandon() override
    {
        if (onAbandon) {
            onAbandon();
        }
    }

    std::vector<Item> items;
    std::optional<KeychainStatus> failure; ///< the answer to every call, while it is set
    std::function<void()>
        askTheUser; ///< runs within every call but peek(), as a locked keychain's dialog does
    std::function<void()> onAbandon;
    QStringList calls; ///< operations, in the order of calling

private:
    void ask() const
    {
        if (askTheUser) {
            askTheUser();
        }
    }
    KeychainStatus begin(const char *operation, const KeychainQuery &query)
    {
        calls.append(QString::fromLatin1(operation));
        if (failure) {
            return *failure;
        }
        return find(query) == items.end() ? KeychainStatus::itemNotFound : KeychainStatus::success;
    }
    std::vector<Item>::iterator find(const KeychainQuery &query)
    {
        return std::find_if(
            items.begin(), items.end(), [&query](const Item &item) { return item.query == query; });
    }
};

} // namespace lumaphone::test
