"""The phrases, their tokens and the vocabulary."""
import pathlib

HERE = pathlib.Path(__file__).resolve().parent.parent
VOICES = {"ja": "ja", "en": "en-us", "ko": "ko", "zh": "cmn-latn-pinyin"}
# What SenseVoice writes before the text: language, emotion, event, whether numbers are written out.
MARKS = ["<blk>", "<|zh|>", "<|en|>", "<|yue|>", "<|ja|>", "<|ko|>", "<|nospeech|>", "<|EMO_UNKNOWN|>", "<|Speech|>",
         "<|BGM|>", "<|withitn|>", "<|woitn|>"]


def load_phrases():
    """Language -> list of (spelling for the voice, text)."""
    phrases = {}
    for line in (HERE / "phrases.tsv").read_text(encoding="utf-8").splitlines():
        language, spelling, text = line.split("\t")
        phrases.setdefault(language, []).append((spelling, text))
    return phrases


def tokens_of(language, text):
    """English in words, Korean in syllables, the others in characters. A word begins with its mark."""
    if language == "en":
        return ["▁" + word for word in text.split()]
    if language == "ko":
        return [token for word in text.split() for token in ["▁" + word[0], *word[1:]]]
    return list(text)


def vocabulary():
    """The tokens in the order of tokens.txt."""
    return [line.rsplit(" ", 1)[0] for line in (HERE / "tokens.txt").read_text(encoding="utf-8").splitlines()]
