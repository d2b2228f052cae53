#include "bench/endurance/KilledStore.h"
#include "bench/speech/Chance.h"
#include "bench/speech/Waiting.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "support/GlossaryTerms.h"

#include <algorithm>

namespace lumaphone::bench {

namespace {

constexpr int mostTerms = 200;

void requireWell(const LumaphoneGlossaryStore &store)
{
    if (store.lastErrorMessage()) {
        throw BenchError(*store.lastErrorMessage());
    }
}

/// Terms by their sources, with their targets.
class KilledGlossary final : public KilledStore
{
public:
    explicit KilledGlossary(const QString &folder)
        : m_folder(folder)
    {
    }

    StoreContents contents() const override
    {
        const LumaphoneGlossaryStore store(m_folder, {});
        requireWell(store);
        StoreContents found;
        for (const LumaphoneGlossaryTerm &term : store.terms()) {
            found.insert(term.source, term.target);
        }
        return found;
    }

    StoreChange plan(const StoreContents &held, int number, std::mt19937 &chance) const override
    {
        const QString text = QString::number(number);
        const int kind = held.isEmpty() ? 0 : oneOf(held.size() < mostTerms ? 0 : 2, 3, chance);
        if (kind <= 1) {
            return {{QStringLiteral("term ") + text, text}};
        }
        const QString name = anyOf(held, chance);
        return {{name, kind == 2 ? std::optional(text) : std::nullopt}};
    }

    void make(const StoreChange &change) override
    {
        if (!m_store) {
            m_store = std::make_unique<LumaphoneGlossaryStore>(m_folder, FileRevealer());
        }
        const QString source = nameIn(change);
        const std::optional<QString> target = change.value(source);
        const auto &terms = m_store->terms();
        const auto found = std::find_if(
            terms.begin(), terms.end(), [&source](const auto &term) { return term.source == source; });
        if (found == terms.end()) {
            m_store->add(test::translated(source, target.value()));
        } else if (const LumaphoneGlossaryTerm former = *found; target) {
            LumaphoneGlossaryTerm changed = former;
            changed.target = *target;
            m_store->replace(former, changed);
        } else {
            m_store->remove(former);
        }
        requireWell(*m_store);
    }

    QList<StoreChange> touchAll(const StoreContents & /*held*/, int number) const override
    {
        return {{{QStringLiteral("the last term"), QString::number(number)}}};
    }

    QStringList strays() const override
    {
        return unexpectedEntries(m_folder, [](const QString &name) {
            return name == QLatin1String("glossary.json") || name == QLatin1String(".glossary.lock");
        });
    }

private:
    QString m_folder;
    std::unique_ptr<LumaphoneGlossaryStore> m_store;
};

} // namespace

std::unique_ptr<KilledStore> killedGlossary(const QString &folder)
{
    return std::make_unique<KilledGlossary>(folder);
}

} // namespace lumaphone::bench
