"""Checks that the folders of src/ include each other, and the window's views import each other, exactly as the table says: no arrow
more, none less."""
import collections
import itertools
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
    # The window's parts are QML modules; most stand side by side.
    "app/texts": "",
    "app/keys": "app/texts",
    "app/controls": "app/texts language",
    "app/diagnosis": "app/controls app/texts diagnosis base",
    "app/floating": "app/controls app/texts session storage platform/display platform base",
    "app/glossary": "app/controls app/keys app/texts glossary base",
    "app/library": "app/controls app/keys app/texts storage base",
    "app/live": "app/controls app/keys app/texts session storage glossary language base",
    "app/models": "app/controls app/texts storage models platform language base",
    "app/inspector": "app/models app/live app/floating app/controls app/texts session storage translation translation/provider glossary "
                     "language base",
    "app/welcome": "app/inspector app/models app/controls app/texts storage",
    "app/shell": "app/welcome app/inspector app/models app/live app/library app/glossary app/floating app/diagnosis app/controls "
                 "app/keys app/texts",
    "app": "app/shell app/welcome app/inspector app/models app/live app/library app/glossary app/floating app/diagnosis app/controls "
           "app/texts machine session storage platform/desktop platform/display base",
}


def types_in(folder):
    """What a view can use of a module: its views and the C++ types that it registers."""
    types = {view.stem for view in folder.glob("*.qml")}
    for header in folder.glob("*.h"):
        text = header.read_text(encoding="utf-8")
        types |= set(re.findall(r"QML_(?:NAMED_ELEMENT|VALUE_TYPE)\((\w+)\)", text))
        types |= set(re.findall(r"class (\w+)[^{};]*\{\s*Q_OBJECT\s*QML_ELEMENT", text))
    return types


def imports(root):
    """Every import of a view: file, line, its folder, the folder it points at; none if nothing is used of it."""
    for view in sorted(root.rglob("*.qml")):
        relative = view.relative_to(root)
        lines = view.read_text(encoding="utf-8").splitlines()
        words = set(re.findall(r"\w+", " ".join(line for line in lines if not line.lstrip().startswith(("import ", "//")))))
        for number, line in enumerate(lines, 1):
            match = re.match(r"import Lumaphone(?:\.(\w+))?$", line)
            if match:
                target = pathlib.PurePosixPath("app", (match.group(1) or "").lower())
                yield relative, number, relative.parent.as_posix(), target.as_posix() if types_in(root / target) & words else None


def includes(root):
    """Every include: file, line, its folder, the folder it points at; none if there is no such file."""
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
    for file, number, folder, used in itertools.chain(includes(root), imports(root)):
        checked += 1
        if used is None:
            problems.append(f"{file}:{number}: points at nothing that is there, or that is used")
        elif folder not in table:
            problems.append(f"{file}: folder {folder} is not in the table")
        elif used != folder:
            seen[folder].add(used)
            if used not in table[folder]:
                problems.append(f"{file}:{number}: {folder} may not include {used}")
    for folder, row in table.items():
        problems += [f"the table: {folder} includes nothing of {unused}" for unused in sorted(row - seen[folder])]
    print("\n".join(problems) or f"{checked} includes and imports point the right way")
    return 1 if problems or not checked else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
