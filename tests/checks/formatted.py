"""Checks that clang-format would change nothing."""
import pathlib
import subprocess
import sys

from pinned_tools import skip_without

root, clang_format = pathlib.Path(sys.argv[1]), sys.argv[2]
skip_without("clang-format", clang_format)
sources = [str(path) for folder in ("src", "tests", "bench", "fuzz")
           for path in sorted((root / folder).rglob("*")) if path.suffix in (".h", ".cpp")]
result = subprocess.run([clang_format, "--dry-run", "--Werror", *sources], cwd=root)
print(f"{len(sources)} files looked at")
sys.exit(result.returncode if sources else 1)
