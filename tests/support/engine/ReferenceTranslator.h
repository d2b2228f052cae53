#pragma once

#include "translation/engine/SentenceModel.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace lumaphone::engine::test {

/// What the reference answered.
struct ReferenceAnswer
{
    QStringList translations;
    QList<double> milliseconds; ///< per line
    double megabytes = 0; ///< of its process
};

/// Runs the reference translator in a process of its own, over one leg or two. Throws std::runtime_error.
ReferenceAnswer translateWithReference(
    const QList<ModelFiles> &legs, const QStringList &lines, int warmUp = 0);

} // namespace lumaphone::engine::test
