"""Runs clang-tidy over everything that is compiled for src/, several compilations at a time."""
import concurrent.futures
import json
import os
import pathlib
import subprocess
import sys

root, build, clang_tidy = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
commands = json.loads((build / "compile_commands.json").read_text())
# The sources themselves, or those that a unity build gathers; what Qt's compilers wrote is not ours to mend.
sources = sorted({entry["file"] for entry in commands
                  if pathlib.Path(entry["file"]).is_relative_to(root / "src")
                  or (pathlib.Path(entry["file"]).is_relative_to(build / "src") and "/Unity/" in entry["file"])})


def check(source):
    result = subprocess.run([clang_tidy, "--quiet", "-p", str(build), "--extra-arg=-Wno-unknown-warning-option", source],
                            capture_output=True, text=True)
    return source, result


failed = 0
with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
    for source, result in pool.map(check, sources):
        if result.returncode != 0:
            failed += 1
            base = root if pathlib.Path(source).is_relative_to(root / "src") else build
            print(f"{pathlib.Path(source).relative_to(base)}:\n{result.stdout}{result.stderr}")
print(f"{len(sources)} compilations looked at, {failed} with findings")
sys.exit(1 if failed or not sources else 0)
