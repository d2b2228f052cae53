#include "storage/LumaphoneKeychain.h"

#include <QStringDecoder>

#include <utility>

namespace lumaphone {

namespace {

std::optional<QString> decodedUtf8(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

} // namespace

LumaphoneKeychain::LumaphoneKeychain(KeychainServices &services, QString service)
    : m_services(&services)
    , m_service(std::move(service))
{
}

KeychainQuery LumaphoneKeychain::baseQuery(const QString &account) const
{
    return {m_service, account};
}

std::optional<QString> LumaphoneKeychain::read(const QString &account) const
{
    const auto found = readWithAddress(account);
    return found ? std::optional(found->text) : std::nullopt;
}

std::optional<AddressedText> LumaphoneKeychain::readWithAddress(const QString &account) const
{
    const KeychainReading reading = m_services->copyMatching(baseQuery(account));
    if (reading.status != KeychainStatus::success) {
        return std::nullopt;
    }
    const auto text = decodedUtf8(reading.secret.data);
    return text ? std::optional<AddressedText>({*text, reading.secret.address}) : std::nullopt;
}

KeychainTrace LumaphoneKeychain::peek(const QString &account) const
{
    const KeychainReading reading = m_services->peek(baseQuery(account));
    if (reading.status == KeychainStatus::success && !decodedUtf8(reading.secret.data)) {
        return {};
    }
    return {reading.status, reading.secret.address};
}

void LumaphoneKeychain::save(const QString &value, const QString &account, const QString &address) const
{
    const KeychainQuery query = baseQuery(account);
    const KeychainSecret secret {value.toUtf8(), address};
    if (m_services->update(query, secret) == KeychainStatus::itemNotFound) {
        m_services->add(query, secret);
    }
}

void LumaphoneKeychain::remove(const QString &account) const
{
    m_services->remove(baseQuery(account));
}

} // namespace lumaphone
