"""Reads the phrase book and fills its slots."""
import pathlib
import random
import re
from collections import defaultdict

LANGUAGES = ["en", "ja", "ko", "zh"]
FOLDER = pathlib.Path(__file__).parent
# The form of a Korean particle after a consonant and after a vowel.
PARTICLES = {"은": ("은", "는"), "이": ("이", "가"), "을": ("을", "를"), "으로": ("으로", "로"), "이에요": ("이에요", "예요")}


def rows(name):
    for line in (FOLDER / name).read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            yield line.split("\t")


def read_slots():
    slots = defaultdict(list)
    for name, *words in rows("slots.tsv"):
        slots[name].append(dict(zip(LANGUAGES, words, strict=True)))
    return slots


def read_phrases():
    """Per phrase and language the ways to say it; none where the book has none."""
    return [{language: [way for way in cell.split(" / ") if way] for language, cell in zip(LANGUAGES, row, strict=True)}
            for row in rows("phrases.tsv")]


def with_particles(text):
    def chosen(match):
        before, particle = match.groups()
        final = (ord(before) - 0xAC00) % 28 if "가" <= before <= "힣" else 0
        ends_open = final == 0 or (particle == "으로" and final == 8)
        return before + PARTICLES[particle][ends_open]
    return re.sub(r"(\w)\((\w+)\)", chosen, text)


def as_written(text, language):
    if language == "ko":
        return with_particles(text)
    if language == "en":
        text = re.sub(r"\ba (?=[aeiou]|hour)", "an ", text)
        return text[:1].upper() + text[1:]
    return text


def slots_of(phrase):
    return sorted({name for ways in phrase.values() for way in ways for name in re.findall(r"{(\w+)}", way)})


def filled(way, words, language):
    return as_written(way.format(**{name: word[language] for name, word in words.items()}), language)


def heard(text, language, random):
    """The text as a recogniser may write it: often without capitals and marks."""
    kind = random.random()
    if kind < 0.5:
        text = re.sub(r"[.,?!。、？！，]", "", text)
        if language == "en":
            text = text.replace("-", " ").lower()
    elif kind < 0.65:
        text = re.sub(r"[.?!。？！]$", "", text)
    return text


def is_held_out(index, words):
    """Whether one filling of a phrase is kept from training: about one in twenty of those with two slots or more."""
    if len(words) < 2:
        return False
    key = f"{index}:" + ":".join(word["en"] for word in words.values())
    return random.Random(key).random() < 0.05


def sampled(phrases, slots, source, target, count, seed):
    """`count` pairs for training, phrases with more fillings more often."""
    chooser = random.Random(seed)
    usable = [(index, phrase) for index, phrase in enumerate(phrases) if phrase[source] and phrase[target]]
    weights = [(3, 3, 5, 6)[min(len(slots_of(phrase)), 3)] for _, phrase in usable]
    pairs = []
    while len(pairs) < count:
        index, phrase = chooser.choices(usable, weights)[0]
        words = {name: chooser.choice(slots[name]) for name in slots_of(phrase)}
        if is_held_out(index, words):
            continue
        ways = phrase[source]
        way = ways[0] if chooser.random() < 0.3 else chooser.choice(ways)
        pairs.append((heard(filled(way, words, source), source, chooser), filled(phrase[target][0], words, target)))
    return pairs
