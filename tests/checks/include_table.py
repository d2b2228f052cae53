"""Checks that the folders of src/ include each other exactly as the table says: no arrow more, none less."""
import collections
import pathlib
import re
import sys

# Folder -> folders it includes, besides itself, from the bottom up: only what stands above a row may stand in it. What is not
# named here may not exist.
TABLE = {
    "base": "",
    "language": "base",
    "platform": "base",
    "platform/desktop": "platform base",
    "platform/display": "platform",
    "platform/sound": "platform base",
    "diagnosis": "platform",
    "models": "platform language base",
    "speech/protocol": "",
    "speech/host": "speech/protocol",
    "speech/framework": "platform language base",
    "speech/pocketsphinx": "speech/framework platform language base",
    "speech/hosted": "speech/framework speech/protocol models platform language base",
    "capture": "platform language base",
    "glossary": "base",
    "translation/provider": "",
    "translation": "translation/provider glossary platform language base",
    "translation/engine": "language base",
    "translation/ondevice": "translation/engine models platform language base",
    "storage": "translation/provider glossary platform language base",
    "session/revision": "base",
    "session": "session/revision storage translation translation/provider glossary capture platform language base",
    "machine": "session storage translation/ondevice translation glossary capture speech/hosted speech/pocketsphinx "
               "speech/framework models platform/sound platform/display platform/desktop platform language base",
    "core-cli": "session/revision",
    "cli": "platform/desktop machine session storage glossary capture models diagnosis platform language base",
    # The window's parts stand side by side; its root knows them all.
    "app/diagnosis": "diagnosis base",
    "app/floating": "session storage platform/display platform base",
    "app/glossary": "glossary base",
    "app/inspector": "session storage translation translation/provider glossary language base",
    "app/library": "storage base",
    "app/live": "session storage glossary language base",
    "app/models": "storage models language base",
    "app": "app/diagnosis app/floating app/glossary app/inspector app/library app/live app/models machine session "
           "platform/desktop platform/display language base",
}


def arrows(root):
    """Every include: file, line, its folder, the folder it points at; and those that point nowhere."""
    for source in sorted(p for p in root.rglob("*") if p.suffix in (".h", ".cpp")):
        relative = source.relative_to(root)
        for number, line in enumerate(source.read_text(encoding="utf-8").splitlines(), 1):
            match = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
            if not match:
                continue
            target = pathlib.PurePosixPath(match.group(1))
            if (root / target).exists():
                yield relative, number, relative.parent.as_posix(), target.parent.as_posix()
            elif len(target.parts) > 1:
                yield relative, number, relative.parent.as_posix(), None  # generated headers have no folder


def main(root):
    problems = []
    table = {folder: set(row.split()) for folder, row in TABLE.items()}
    order = list(table)
    for folder, row in table.items():
        for used in row:
            if used not in order[: order.index(folder)]:
                problems.append(f"the table: {folder} includes {used}, which does not stand above it")
    seen = collections.defaultdict(set)
    checked = 0
    for file, number, folder, used in arrows(root):
        checked += 1
        if used is None:
            problems.append(f"{file}:{number}: no such file below src")
        elif folder not in table:
            problems.append(f"{file}: folder {folder} is not in the table")
        elif used != folder:
            seen[folder].add(used)
            if used not in table[folder]:
                problems.append(f"{file}:{number}: {folder} may not include {used}")
    for folder, row in table.items():
        problems += [f"the table: {folder} includes nothing of {unused}" for unused in sorted(row - seen[folder])]
    print("\n".join(problems) or f"{checked} includes point the right way")
    return 1 if problems or not checked else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
