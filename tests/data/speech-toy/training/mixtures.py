"""Makes training examples of renderings: silence around them, noise or chords behind them, any loudness."""
import numpy as np
from scipy.signal import lfilter

from features import streaming_features, whole_features
from phrases import load_phrases, tokens_of, vocabulary

RATE = 16000


def chords(chance, count):
    time = np.arange(count) / RATE
    sound = np.zeros(count)
    length = int(chance.uniform(0.2, 0.7) * RATE)
    for start in range(0, count, length):
        end = min(count, start + length)
        since = time[start:end] - time[start]
        for _ in range(chance.integers(1, 5)):
            pitch = 110 * 2 ** (chance.integers(0, 40) / 12)
            for harmonic in range(1, 5):
                sound[start:end] += (np.sin(2 * np.pi * pitch * harmonic * since + chance.uniform(0, 6))
                                     / harmonic ** 1.5 * np.exp(-since * chance.uniform(0, 4)))
    return sound.astype(np.float32)


def background(chance, count):
    """White noise, two kinds of darker noise, or chords."""
    kind = chance.integers(0, 4)
    if kind == 3:
        return chords(chance, count)
    noise = chance.standard_normal(count).astype(np.float32)
    return lfilter([1], [1, -(0, 0.95, 0.6)[kind]], noise).astype(np.float32)


def mixture(chance, parts, lead, gaps, signal_to_noise_db, peak):
    """`lead` seconds of nothing, then every part followed by its gap, over a background."""
    pieces = [np.zeros(int(lead * RATE), np.float32)]
    for part, gap in zip(parts, gaps):
        pieces += [part, np.zeros(int(gap * RATE), np.float32)]
    sound = np.concatenate(pieces)
    behind = background(chance, len(sound))
    power = np.mean(np.concatenate(parts) ** 2) / (np.mean(behind ** 2) + 1e-12)
    sound = sound + behind * np.sqrt(power / 10 ** (signal_to_noise_db / 10))
    sound = sound / (np.abs(sound).max() + 1e-9) * peak
    return (np.round(sound * 32767) / 32768).astype(np.float32)


def examples(renderings, count):
    """Two lists of (features, token numbers, language), for the streaming and for the whole network."""
    phrases, numbers = load_phrases(), {token: number for number, token in enumerate(vocabulary())}
    languages = sorted({language for language, _, _ in renderings})
    by_language = {language: [r for r in renderings if r[0] == language] for language in languages}
    chance = np.random.default_rng(77)

    def loudness():
        return 10 ** (chance.uniform(-26, 0) / 20) * 0.9

    def pick(language):
        return by_language[language][chance.integers(len(by_language[language]))]

    def labels(rendering):
        language, index, _ = rendering
        return [numbers[token] for token in tokens_of(language, phrases[language][index][1])]

    streaming, whole = [], []
    for number in range(count):
        if number % 12 == 0:
            sound = background(chance, int(chance.uniform(1, 4) * RATE))
            sound = sound / np.abs(sound).max() * 10 ** (chance.uniform(-50, 0) / 20) * 0.7
            streaming.append((streaming_features(sound), [], "-"))
            whole.append((whole_features(sound), [], "nospeech"))
            continue
        language = chance.choice(languages)
        chosen = [pick(language) for _ in range(chance.choice([1, 1, 2, 3]))]
        if chance.random() < 0.2:
            chosen = [renderings[chance.integers(len(renderings))] for _ in chosen]
        gaps = [chance.uniform(0.15, 1.0) for _ in chosen[1:]] + [chance.uniform(0.5, 1.0)]
        sound = mixture(chance, [r[2] for r in chosen], chance.uniform(0.05, 0.8), gaps, chance.uniform(10, 50),
                        loudness())
        streaming.append((streaming_features(sound), sum(map(labels, chosen), []), language))
        chosen = [pick(language)] if chance.random() < 0.7 else [pick(language), pick(language)]
        sound = mixture(chance, [r[2] for r in chosen], chance.uniform(0.0, 0.5),
                        [chance.uniform(0.1, 0.5) for _ in chosen], chance.uniform(10, 50), loudness())
        whole.append((whole_features(sound), sum(map(labels, chosen), []), language))
    return streaming, whole
