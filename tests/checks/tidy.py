"""Runs clang-tidy over the sources under src/, several compilations at a time.

Most of the time goes into the toolkit's headers, so that the sources of one target are looked at as one: all that its
unity build gathers, in as many files as it may be.
"""
import concurrent.futures
import json
import os
import pathlib
import re
import subprocess
import sys

from pinned_tools import skip_without

root, build, clang_tidy = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
skip_without("clang-tidy", clang_tidy)
folder = build / "tests/checks/tidy"
folder.mkdir(parents=True, exist_ok=True)


def is_ours(path):
    """What Qt's compilers wrote is not ours to mend."""
    return pathlib.Path(path).is_relative_to(root / "src")


def sources_of(entry):
    if "/Unity/" not in entry["file"]:
        return [entry["file"]]
    return re.findall(r'#include "(.+)"', pathlib.Path(entry["file"]).read_text())


# A source that is compiled for itself has options of its own.
compilations = {}
for entry in json.loads((build / "compile_commands.json").read_text()):
    folder_of_target, target = re.search(r" -o (\S+)/CMakeFiles/([^/]+)\.dir/", entry["command"]).groups()
    sources = list(filter(is_ours, sources_of(entry)))
    if not sources or not (build / folder_of_target).is_relative_to(build / "src"):
        continue
    name = target if "/Unity/" in entry["file"] else f"{target}-{pathlib.Path(entry['file']).stem}"
    compilations.setdefault(name, (entry, []))[1].extend(sources)

commands = []
for name, (entry, sources) in compilations.items():
    gathered = folder / f"{name}.cpp"
    gathered.write_text("".join(f'#include "{source}"\n' for source in sources))
    # Headers that another compiler has made beforehand cannot be read.
    command = re.sub(r" -include \S+/cmake_pch\.hxx", "", entry["command"])
    commands.append({"directory": entry["directory"], "file": str(gathered), "command": command.replace(entry["file"], str(gathered))})
(folder / "compile_commands.json").write_text(json.dumps(commands))


def check(name):
    result = subprocess.run([clang_tidy, "--quiet", "-p", str(folder), "--config-file", str(root / ".clang-tidy"),
                             "--extra-arg=-Wno-unknown-warning-option", str(folder / f"{name}.cpp")],
                            capture_output=True, text=True)
    return name, result


failed = 0
# The longest first.
names = sorted(compilations, key=lambda name: -len(compilations[name][1]))
with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
    for name, result in pool.map(check, names):
        if result.returncode != 0:
            failed += 1
            print(f"{name}:\n{result.stdout}{result.stderr}")
print(f"{sum(len(sources) for _, sources in compilations.values())} sources in {len(names)} compilations looked at, "
      f"{failed} with findings")
sys.exit(1 if failed or not names else 0)
