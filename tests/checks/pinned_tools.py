"""Each major version of the tools formats and finds differently: the sources follow one."""
import re
import subprocess
import sys

MAJOR_VERSION = 14
# What ctest takes for "skipped".
SKIPPED = 77


def skip_without(tool, path):
    """Ends the check, and says why, where `path` is not the tool of the version that the sources follow."""
    try:
        found = subprocess.run([path, "--version"], capture_output=True, text=True, check=True).stdout
    except OSError:
        found = ""
    version = re.search(r"version (\d+)\.", found)
    if version is None or int(version[1]) != MAJOR_VERSION:
        there = f"there is version {version[1]}" if version else "there is none"
        print(f"Skipped: the sources follow {tool} {MAJOR_VERSION}, and {there}.")
        sys.exit(SKIPPED)
