#pragma once

#include "translation/engine/SentenceModel.h"

#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace lumaphone::engine::test {

/// Whether npm has installed the reference, as the test ReferenceTranslatorIsInstalled tries.
bool isReferenceInstalled();

/// What the reference answered.
struct ReferenceAnswer
{
    QStringList translations;
    QList<double> milliseconds; ///< per line
    QList<double> processorMilliseconds; ///< the same without the time that others had the processor
    double megabytes = 0; ///< of its process
};

/// The reference translator at work in a process of its own, over one leg or two.
class ReferenceTranslation
{
public:
    /// The files of the legs stay until the answer is there.
    ReferenceTranslation(const QList<ModelFiles> &legs, const QStringList &lines, int warmUp = 0);

    /// Waits for the end; to be called once. Throws std::runtime_error.
    ReferenceAnswer answer();

private:
    QProcess m_process;
    qsizetype m_lines;
};

/// Runs the reference and waits. Throws std::runtime_error.
ReferenceAnswer translateWithReference(
    const QList<ModelFiles> &legs, const QStringList &lines, int warmUp = 0);

} // namespace lumaphone::engine::test
