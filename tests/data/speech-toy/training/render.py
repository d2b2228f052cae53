"""Speaks the phrases with espeak-ng, in many voices, speeds and pitches."""
import concurrent.futures
import pathlib
import random
import subprocess
import wave

import numpy as np
from scipy.signal import resample_poly

from phrases import VOICES, load_phrases

# Never learned from: the tests speak with them.
HELD_OUT = ["m6", "m8", "f3", "f5", "klatt3", "Andy", "Denis", "shelby", "anika", "marcelo"]
UNUSABLE = {"whisper", "whisperf", "Demonic", "AnxiousAndy", "Tweaky", "Storm", "kaukovalta", "RicishayMax",
            "RicishayMax2", "RicishayMax3"}


def voice_variants():
    """The voices to learn from, as far as espeak-ng has them."""
    listing = subprocess.run(["espeak-ng", "--voices=variant"], check=True, capture_output=True, text=True).stdout
    names = [line.split()[-1].removeprefix("!v/") for line in listing.splitlines()[1:]]
    return sorted(name for name in set(names)
                  if name not in HELD_OUT and name not in UNUSABLE and not name.startswith("robosoft"))


def load(path):
    """A rendering as 16 kHz samples in [-1, 1], without silence around it."""
    with wave.open(str(path)) as file:
        rate = file.getframerate()
        samples = np.frombuffer(file.readframes(file.getnframes()), np.int16).astype(np.float32) / 32768
    if rate == 22050:
        samples = resample_poly(samples, 320, 441).astype(np.float32)
    loud = np.where(np.abs(samples) > 0.003)[0]
    return samples[loud[0]:loud[-1] + 1] if len(loud) else samples


def render(folder, phrase_limit=None, variant_limit=None, plain=7):
    """A list of (language, index of the phrase, samples)."""
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    chance = random.Random(7)
    variants = voice_variants()[:variant_limit] + [""] * plain
    jobs = [(language, index, spelling, variant, chance.randint(110, 240), chance.randint(15, 85))
            for language, phrases in load_phrases().items()
            for index, (spelling, _) in enumerate(phrases[:phrase_limit])
            for variant in variants]

    def speak(numbered):
        number, (language, index, spelling, variant, speed, pitch) = numbered
        path = folder / f"{number}.wav"
        voice = VOICES[language] + (f"+{variant}" if variant else "")
        subprocess.run(["espeak-ng", "-v", voice, "-s", str(speed), "-p", str(pitch), "-w", str(path), spelling],
                       check=True, stderr=subprocess.DEVNULL)
        samples = load(path)
        path.unlink()
        return language, index, samples

    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        return list(pool.map(speak, enumerate(jobs)))
