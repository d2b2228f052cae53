#include "support/engine/ReferenceTranslator.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <stdexcept>

namespace lumaphone::engine::test {
namespace {

QJsonObject described(const ModelFiles &files)
{
    QJsonArray vocabularies = {files.sourceVocabulary};
    if (!files.targetVocabulary.isEmpty())
        vocabularies.append(files.targetVocabulary);
    return {{QStringLiteral("model"), files.model}, {QStringLiteral("vocabularies"), vocabularies},
        {QStringLiteral("shortlist"), files.shortlist}};
}

} // namespace

bool isReferenceInstalled()
{
    return QFile::exists(QStringLiteral(LUMAPHONE_NODE))
        && QFile::exists(QStringLiteral(LUMAPHONE_REFERENCE_FOLDER "/installed"));
}

ReferenceTranslation::ReferenceTranslation(
    const QList<ModelFiles> &legs, const QStringList &lines, int warmUp)
    : m_lines(lines.size())
{
    QJsonArray describedLegs;
    for (const ModelFiles &leg : legs)
        describedLegs.append(described(leg));
    const QJsonObject request = {{QStringLiteral("folder"), QStringLiteral(LUMAPHONE_REFERENCE_FOLDER)},
        {QStringLiteral("legs"), describedLegs}, {QStringLiteral("lines"), QJsonArray::fromStringList(lines)},
        {QStringLiteral("warmUp"), warmUp}};
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(LUMAPHONE_NODE), {QStringLiteral(LUMAPHONE_REFERENCE_SCRIPT)});
    m_process.write(QJsonDocument(request).toJson());
    m_process.closeWriteChannel();
    while (m_process.bytesToWrite() > 0 && m_process.waitForBytesWritten(-1)) {
    }
}

ReferenceAnswer ReferenceTranslation::answer()
{
    if ((m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(-1))
        || m_process.exitStatus() != QProcess::NormalExit || m_process.exitCode() != 0)
        throw std::runtime_error("the reference failed: " + m_process.errorString().toStdString());
    const QJsonObject reply = QJsonDocument::fromJson(m_process.readAllStandardOutput()).object();
    ReferenceAnswer answer;
    for (const QJsonValue &text : reply[QStringLiteral("translations")].toArray())
        answer.translations.append(text.toString());
    for (const QJsonValue &time : reply[QStringLiteral("milliseconds")].toArray())
        answer.milliseconds.append(time.toDouble());
    for (const QJsonValue &time : reply[QStringLiteral("processorMilliseconds")].toArray())
        answer.processorMilliseconds.append(time.toDouble());
    answer.megabytes = reply[QStringLiteral("megabytes")].toDouble();
    if (answer.translations.size() != m_lines)
        throw std::runtime_error("the reference left lines out");
    return answer;
}

ReferenceAnswer translateWithReference(const QList<ModelFiles> &legs, const QStringList &lines, int warmUp)
{
    return ReferenceTranslation(legs, lines, warmUp).answer();
}

} // namespace lumaphone::engine::test
