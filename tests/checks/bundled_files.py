"""Checks that the program expects of the files that come with it what packaging/speech-files.txt brings, and no others."""
import json
import pathlib
import sys

catalogue, brought = (pathlib.Path(path).read_text(encoding="utf-8") for path in sys.argv[1:3])

expected = {f"{model['id']}/{file['name']}": file["sha256"]
            for model in json.loads(catalogue)["models"] if model.get("bundled") for file in model["files"]}
lines = [line.split() for line in brought.splitlines() if line and not line.startswith("#")]
found = {path: digest for digest, _, path, *_ in lines if "/" in path}

problems = [f"{path}: {expected.get(path, 'not expected')}, but {found.get(path, 'not brought')}"
            for path in sorted(expected.keys() | found.keys()) if expected.get(path) != found.get(path)]
print("\n".join(problems) or f"{len(expected)} files are what they should be")
sys.exit(1 if problems or not expected else 0)
