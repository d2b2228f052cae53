#include "app/diagnosis/DiagnosisModel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>

namespace lumaphone {

namespace {

QVariantMap mapOf(const Finding &finding)
{
    return {
        {QStringLiteral("isProblem"), finding.state == Finding::State::problem},
        {QStringLiteral("isAdvice"), finding.state == Finding::State::advice},
        {QStringLiteral("isNeutral"), finding.state == Finding::State::neutral},
        {QStringLiteral("text"), finding.text},
        {QStringLiteral("step"), finding.step},
    };
}

} // namespace

DiagnosisModel::DiagnosisModel(
    Probe probe, DetachedTasks &tasks, std::shared_ptr<MainQueue> mainQueue, QObject *parent)
    : QObject(parent)
    , m_probe(std::move(probe))
    , m_tasks(tasks)
    , m_mainQueue(std::move(mainQueue))
{
}

QVariantList DiagnosisModel::groups() const
{
    QVariantList groups;
    for (const FindingGroup &group : m_diagnosis.groups) {
        QVariantList findings;
        for (const Finding &finding : group.findings) {
            findings.append(mapOf(finding));
        }
        groups.append(
            QVariantMap {{QStringLiteral("title"), group.title}, {QStringLiteral("findings"), findings}});
    }
    return groups;
}

void DiagnosisModel::run()
{
    if (m_isRunning) {
        return;
    }
    m_isRunning = true;
    emit changed();
    m_tasks.run("diagnosis", [probe = m_probe, mainQueue = m_mainQueue, model = QPointer(this)] {
        mainQueue->post([facts = probe(), model] {
            if (model) {
                model->take(facts);
            }
        });
    });
}

void DiagnosisModel::take(const MachineFacts &facts)
{
    m_diagnosis = diagnosisOf(facts);
    m_isRunning = false;
    emit changed();
}

void DiagnosisModel::copy() const
{
    QGuiApplication::clipboard()->setText(diagnosisText(m_diagnosis));
}

} // namespace lumaphone
