#include "support/engine/ReferenceTranslator.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

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

ReferenceAnswer translateWithReference(const QList<ModelFiles> &legs, const QStringList &lines, int warmUp)
{
    QJsonArray describedLegs;
    for (const ModelFiles &leg : legs)
        describedLegs.append(described(leg));
    const QJsonObject request = {{QStringLiteral("folder"), QStringLiteral(LUMAPHONE_REFERENCE_FOLDER)},
        {QStringLiteral("legs"), describedLegs}, {QStringLiteral("lines"), QJsonArray::fromStringList(lines)},
        {QStringLiteral("warmUp"), warmUp}};
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(LUMAPHONE_NODE), {QStringLiteral(LUMAPHONE_REFERENCE_SCRIPT)});
    process.write(QJsonDocument(request).toJson());
    process.closeWriteChannel();
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0)
        throw std::runtime_error("the reference failed: " + process.errorString().toStdString());
    const QJsonObject reply = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    ReferenceAnswer answer;
    for (const QJsonValue &text : reply[QStringLiteral("translations")].toArray())
        answer.translations.append(text.toString());
    for (const QJsonValue &time : reply[QStringLiteral("milliseconds")].toArray())
        answer.milliseconds.append(time.toDouble());
    answer.megabytes = reply[QStringLiteral("megabytes")].toDouble();
    if (answer.translations.size() != lines.size())
        throw std::runtime_error("the reference left lines out");
    return answer;
}

} // namespace lumaphone::engine::test
