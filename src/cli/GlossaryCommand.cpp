#include "cli/GlossaryCommand.h"

#include "base/Text.h"
#include "cli/TerminalText.h"
#include "glossary/LumaphoneGlossaryStore.h"

#include <QStringList>

namespace lumaphone::cli {

namespace {

/// The terms whose source is exactly that text.
QList<LumaphoneGlossaryTerm> termsNamed(const QString &source, const LumaphoneGlossaryStore &store)
{
    QList<LumaphoneGlossaryTerm> found;
    for (const LumaphoneGlossaryTerm &term : store.terms()) {
        if (text::canonicallyEqual(term.source, text::trimmed(source))) {
            found.append(term);
        }
    }
    return found;
}

/// A file that could not be loaded or written is told; a glossary that cannot be read is never written over
/// from here.
bool complained(const LumaphoneGlossaryStore &store, const CommandStreams &streams)
{
    if (const auto &message = store.lastErrorMessage()) {
        streams.complain(*message);
        return true;
    }
    return false;
}

ExitStatus notFound(const QString &source, const CommandStreams &streams)
{
    streams.complain(QStringLiteral("Glossary 裡沒有「%1」。").arg(source));
    return exitFailure;
}

} // namespace

ExitStatus runGlossaryList(const LumaphoneGlossaryStore &store, const CommandStreams &streams)
{
    if (complained(store, streams)) {
        return exitFailure;
    }
    for (const LumaphoneGlossaryTerm &term : store.terms()) {
        const QStringList columns {term.isEnabled ? QStringLiteral("on") : QStringLiteral("off"),
            rawValue(term.mode), singleRow(term.source), singleRow(term.target), singleRow(term.note)};
        streams.print(columns.join(QLatin1Char('\t')));
    }
    return exitSuccess;
}

ExitStatus runGlossaryAdd(const GlossaryAdd &command, LumaphoneGlossaryStore &store,
    const UuidGenerator &makeUuid, const CommandStreams &streams)
{
    if (complained(store, streams)) {
        return exitFailure;
    }
    if (!termsNamed(command.source, store).isEmpty()) {
        streams.complain(QStringLiteral("Glossary 裡已經有「%1」。").arg(command.source));
        return exitFailure;
    }
    store.add({makeUuid(), command.source, command.target, command.mode, command.note, true,
        command.caseSensitive});
    return complained(store, streams) ? exitFailure : exitSuccess;
}

ExitStatus runGlossaryRemove(
    const GlossaryRemove &command, LumaphoneGlossaryStore &store, const CommandStreams &streams)
{
    if (complained(store, streams)) {
        return exitFailure;
    }
    const QList<LumaphoneGlossaryTerm> found = termsNamed(command.source, store);
    if (found.isEmpty()) {
        return notFound(command.source, streams);
    }
    for (const LumaphoneGlossaryTerm &term : found) {
        store.remove(term);
    }
    return complained(store, streams) ? exitFailure : exitSuccess;
}

ExitStatus runGlossarySetEnabled(
    const GlossarySetEnabled &command, LumaphoneGlossaryStore &store, const CommandStreams &streams)
{
    if (complained(store, streams)) {
        return exitFailure;
    }
    const QList<LumaphoneGlossaryTerm> found = termsNamed(command.source, store);
    if (found.isEmpty()) {
        return notFound(command.source, streams);
    }
    for (const LumaphoneGlossaryTerm &former : found) {
        LumaphoneGlossaryTerm term = former;
        term.isEnabled = command.isEnabled;
        store.replace(former, term);
    }
    return complained(store, streams) ? exitFailure : exitSuccess;
}

ExitStatus runGlossaryImport(
    const GlossaryImport &command, LumaphoneGlossaryStore &store, const CommandStreams &streams)
{
    if (complained(store, streams)) {
        return exitFailure;
    }
    const qsizetype before = store.terms().size();
    store.importTerms(command.path);
    if (complained(store, streams)) {
        return exitFailure;
    }
    streams.print(QStringLiteral("已加入 %1 個詞彙。").arg(store.terms().size() - before));
    return exitSuccess;
}

ExitStatus runGlossaryExport(
    const GlossaryExport &command, const LumaphoneGlossaryStore &store, const CommandStreams &streams)
{
    if (complained(store, streams)) {
        return exitFailure;
    }
    store.exportYAML(command.path);
    for (const LumaphoneGlossaryTerm &term : store.terms()) {
        if ((term.source + term.target).contains(QLatin1Char('\n'))) {
            streams.complain(
                QStringLiteral("「%1」含有換行，再匯入時會不完整。").arg(singleRow(term.source)));
        }
    }
    streams.print(QStringLiteral("已匯出 %1 個詞彙。").arg(store.terms().size()));
    return exitSuccess;
}

} // namespace lumaphone::cli
