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
    const KeychainReading reading = m_services->copyMatching(baseQuery(account));
    if (reading.status != KeychainStatus::success) {
        return std::nullopt;
    }
    return decodedUtf8(reading.data);
}

bool LumaphoneKeychain::holds(const QString &account) const
{
    const KeychainReading reading = m_services->peek(baseQuery(account));
    return reading.status == KeychainStatus::locked
        || (reading.status == KeychainStatus::success && decodedUtf8(reading.data));
}

void LumaphoneKeychain::save(const QString &value, const QString &account) const
{
    const KeychainQuery query = baseQuery(account);
    const QByteArray data = value.toUtf8();
    if (m_services->update(query, data) == KeychainStatus::itemNotFound) {
        m_services->add(query, data);
    }
}

void LumaphoneKeychain::remove(const QString &account) const
{
    m_services->remove(baseQuery(account));
}

} // namespace lumaphone
