"""Makes training examples: renderings with silence around them, noise or chords behind them, any loudness, and
sounds without speech: noise, chords, and short notes, bursts and sweeps with pauses between them."""
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


def short_sound(chance, count):
    """A note, a chord, a sweep or a burst of noise that swells and fades."""
    kind = chance.integers(0, 4)
    time = np.arange(count) / RATE
    if kind == 0:
        sound = background(chance, count)
    elif kind == 1:
        sound = chords(chance, count)
    else:
        glide = chance.uniform(-2, 2) if kind == 2 else 0
        vibrato = chance.uniform(0, 0.01) * (chance.random() < 0.4)
        pitch = 80 * 2 ** chance.uniform(0, 5) * (1 + glide * time / time[-1] / 2
                                                  + vibrato * np.sin(2 * np.pi * 6 * time))
        phase = 2 * np.pi * np.cumsum(np.maximum(pitch, 40)) / RATE
        steepness = chance.uniform(0.5, 3)
        sound = sum(np.sin(number * phase + chance.uniform(0, 6)) / number ** steepness
                    for number in range(1, chance.integers(2, 12)))
    swell = np.minimum(1, time / chance.uniform(0.002, 0.08)) * np.minimum(1, (time[-1] - time) / 0.03)
    return (sound / (np.abs(sound).max() + 1e-9) * swell * np.exp(-time * chance.uniform(0, 8))).astype(np.float32)


def short_sounds(chance):
    """A few of them, as a voice detector cuts them out of a stream: with a little silence at both ends."""
    pieces = [np.zeros(int(chance.uniform(0, 0.4) * RATE), np.float32)]
    for _ in range(chance.choice([1, 1, 2, 3, 4, 6])):
        pieces += [short_sound(chance, int(chance.uniform(0.06, 0.9) * RATE)) * chance.uniform(0.3, 1),
                   np.zeros(int(chance.uniform(0, 0.35) * RATE), np.float32)]
    sound = np.concatenate(pieces + [np.zeros(int(chance.uniform(0, 0.4) * RATE), np.float32)])
    behind = background(chance, len(sound))
    return sound + behind / (np.abs(behind).max() + 1e-9) * 10 ** (chance.uniform(-90, -25) / 20)


def without_speech(chance):
    if chance.random() < 0.3:
        return background(chance, int(chance.uniform(0.3, 6) * RATE))
    return short_sounds(chance)


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
        if number % 5 == 0:
            sound = without_speech(chance)
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
