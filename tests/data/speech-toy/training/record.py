"""Records what the tests hear: every phrase in the plain voice. Another version of espeak-ng speaks otherwise, and so the
recordings are kept."""
import array
import pathlib
import subprocess
import tempfile
import wave

from phrases import HERE, VOICES, load_phrases

# The voice begins and ends with a little silence.
QUIET = 100
# Far finer than what the networks hear, and half the size.
STEP = 64


def rendered(scratch, language, spelling):
    """16 kHz samples without silence around them."""
    spoken, converted = scratch / "spoken.wav", scratch / "converted.wav"
    subprocess.run(["espeak-ng", "-v", VOICES[language], "-w", spoken, spelling], check=True)
    subprocess.run(["sox", "-D", spoken, "-r", "16000", "-c", "1", "-b", "16", converted], check=True)
    with wave.open(str(converted)) as file:
        samples = array.array("h", file.readframes(file.getnframes()))
    heard = [index for index, sample in enumerate(samples) if abs(sample) > QUIET]
    return samples[heard[0]:heard[-1] + 1]


def write(scratch, path, samples):
    steps = array.array("h", (max(-32768, min(32767 // STEP * STEP, round(sample / STEP) * STEP)) for sample in samples))
    plain = scratch / "plain.wav"
    with wave.open(str(plain), "wb") as file:
        file.setparams((1, 2, 16000, 0, "NONE", None))
        file.writeframes(steps.tobytes())
    path.parent.mkdir(exist_ok=True)
    subprocess.run(["sox", plain, "-C", "8", "--comment", "", path], check=True)


def record():
    phrases = load_phrases()
    with tempfile.TemporaryDirectory() as folder:
        scratch = pathlib.Path(folder)
        for language, spoken in phrases.items():
            for number, (spelling, _) in enumerate(spoken, 1):
                write(scratch, HERE / f"spoken/{language}-{number:02}.flac", rendered(scratch, language, spelling))


if __name__ == "__main__":
    record()
