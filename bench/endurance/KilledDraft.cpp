#include "bench/endurance/KilledStore.h"
#include "bench/speech/Chance.h"
#include "bench/speech/Waiting.h"
#include "support/LiveSession.h"

#include <QFileInfo>

namespace lumaphone::bench {

namespace {

using namespace std::chrono_literals;

constexpr int mostSentences = 200;

const auto sentenceEnd = QStringLiteral("番目の文はここで終わります");
const auto newSentence = QStringLiteral("final");
const auto translationMark = QStringLiteral(" translated");

/// The final lines of a session that is restored each time, and their translations. Lines that were open when
/// the process was killed are nothing that it has promised.
class KilledDraft final : public KilledStore
{
public:
    explicit KilledDraft(const QString &folder)
        : m_folder(folder)
    {
    }

    StoreContents contents() const override
    {
        const LumaphoneSessionDraftStore store(m_folder);
        const auto draft = store.load();
        if (!draft && QFileInfo::exists(store.draftPath())) {
            throw BenchError(QStringLiteral("The draft cannot be read."));
        }
        StoreContents found;
        for (const LumaphoneCaptionLine &line : draft ? draft->lines : QList<LumaphoneCaptionLine>()) {
            if (line.isFinal && line.sourceText.endsWith(sentenceEnd)) {
                found.insert(line.sourceText, newSentence);
                if (!isPending(line)) {
                    found.insert(line.sourceText + translationMark, line.translatedText);
                }
            }
        }
        return found;
    }

    StoreChange plan(const StoreContents &held, int number, std::mt19937 & /*chance*/) const override
    {
        StoreChange change;
        if (held.size() > 2 * mostSentences) {
            for (const QString &name : held.keys()) {
                change.insert(name, std::nullopt);
            }
            return change;
        }
        const QString sentence = QString::number(number) + sentenceEnd;
        change.insert(sentence, newSentence);
        // Sentences that an earlier process did not get to are translated as well.
        for (const QString &name : held.keys() + QStringList {sentence}) {
            if (name.endsWith(sentenceEnd) && !held.contains(name + translationMark)) {
                change.insert(name + translationMark, test::ScriptedTranslator::translationOf(name));
            }
        }
        return change;
    }

    void make(const StoreChange &change) override
    {
        open();
        const QString sentence = change.key(std::optional(newSentence));
        if (sentence.isEmpty()) {
            m_session->controller->clearCaptions();
            return;
        }
        m_session->clock->stepWallClock(20s);
        for (const qsizetype length : {qsizetype(2), qsizetype(6), sentence.size()}) {
            m_session->speech(sentence.left(length), length == sentence.size());
        }
        while (m_session->controller->isTranslating()) {
            test::settle();
        }
    }

    QList<StoreChange> touchAll(const StoreContents &held, int number) const override
    {
        std::mt19937 chance;
        return {plan(held, number, chance)};
    }

    QStringList strays() const override
    {
        return unexpectedEntries(
            m_folder, [](const QString &name) { return name == QLatin1String("live-session.json"); });
    }

private:
    void open()
    {
        if (m_session) {
            return;
        }
        m_session = std::make_unique<test::LiveSession>(m_folder);
        m_session->makeUuid = &QUuid::createUuid;
        m_session->make();
        // After everything that earlier processes have said.
        const auto draft = LumaphoneSessionDraftStore(m_folder).load();
        if (draft && !draft->lines.isEmpty()) {
            m_session->clock->stepWallClock(
                std::chrono::milliseconds(m_session->clock->now().msecsTo(draft->lines.last().createdAt)));
        }
    }

    QString m_folder;
    std::unique_ptr<test::LiveSession> m_session;
};

} // namespace

std::unique_ptr<KilledStore> killedDraft(const QString &folder)
{
    return std::make_unique<KilledDraft>(folder);
}

} // namespace lumaphone::bench
