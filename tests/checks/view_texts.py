"""Checks that views have no fixed texts of their own: every one of them stands in Texts.qml, and each of those is used."""
import pathlib
import re
import sys

# What people read in Chinese; texts in Latin letters cannot be told from names.
CHINESE = re.compile(r"[\u3000-\u30ff\u3400-\u9fff\uff00-\uffef]")


def code_of(view):
    """The lines of a view without its comments."""
    for number, line in enumerate(view.read_text(encoding="utf-8").splitlines(), 1):
        yield number, re.sub(r"^\s*//.*|\s//\s.*", "", line)


def main(views):
    texts = views / "texts" / "Texts.qml"
    defined = set(re.findall(r"(?:property string|function) (\w+)", texts.read_text(encoding="utf-8")))
    used, problems = set(), []
    for view in sorted(views.rglob("*.qml")):
        if view == texts:
            continue
        for number, code in code_of(view):
            used |= set(re.findall(r"\bTexts\.(\w+)", code))
            problems += [f"{view.relative_to(views)}:{number}: {text} belongs to the texts"
                         for text in re.findall(r'"[^"]*"', code) if CHINESE.search(text)]
    problems += [f"Texts.{name} is not there" for name in sorted(used - defined)]
    problems += [f"Texts.{name} is not used" for name in sorted(defined - used)]
    print("\n".join(problems) or f"{len(defined)} texts are each in one place")
    return 1 if problems or not defined else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
