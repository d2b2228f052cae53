"""Checks the package's copyright file: it has the form that Debian asks for, and every file we did not write stands in
it by name, under the copyright that its licence tells."""
import fnmatch
import pathlib
import re
import sys

packaging = pathlib.Path(sys.argv[1])
problems = []


def expect(description, holds):
    if not holds:
        problems.append(description)


def paragraphs(text):
    """Fields of each paragraph; the lines of a value stay apart."""
    for part in re.split(r"\n{2,}", text.strip()):
        fields = {}
        for line in part.split("\n"):
            if line.startswith(" "):
                fields[name].append(line.strip())
            else:
                name, _, value = line.partition(":")
                fields[name] = [value.strip()]
        yield fields


header, *rest = paragraphs((packaging / "copyright").read_text(encoding="utf-8"))
expect("the first paragraph names the form",
       header["Format"] == ["https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/"])
parts = [fields for fields in rest if "Files" in fields]
texts = {fields["License"][0] for fields in rest if "Files" not in fields}
for fields in rest:
    expect(f"there is a field missing: {fields}", "License" in fields and ("Files" not in fields or "Copyright" in fields))
    if "Files" not in fields:
        expect(f"the text of {fields['License'][0]} is missing", len(fields["License"]) > 1)
used = {name for fields in parts for name in fields["License"][0].split(" and ")}
expect(f"licences without a text or a use: {used ^ texts}", used == texts)
expect("the first part is everything", parts[0]["Files"] == ["*"])

# What install-speech-runtime brings: its file, package and version.
licence = (packaging / "english-speech/LICENSE").read_text(encoding="utf-8")
rows = [line.split() for line in (packaging / "speech-files.txt").read_text().splitlines() if not line.startswith("#")]
expect("there are files", len(rows) >= 7)
for _, _, file, package, _ in rows:
    if package == "-":
        continue
    path = f"usr/libexec/lumaphone/{file}"
    own = [part for part in parts[1:] if any(fnmatch.fnmatch(path, pattern) for pattern in part["Files"])]
    expect(f"{file} is named once", len(own) == 1)
    name, _, version = package.rpartition("@")
    told = " ".join(own[0].get("Comment", []) if own else [])
    if file != "libonnxruntime.so":
        expect(f"{file} comes from {package}", name in told and version in told)
    if file.startswith("english-speech/") and own:
        # A block of the licence: names of files, then what is indented.
        block = re.search(rf"^.*\b{re.escape(file.split('/')[1])}\b.*\n((?: .*\n)+)", licence, re.MULTILINE)
        expect(f"{file} stands in the licence", block)
        if block:
            expect(f"{package} stands beside {file} in the licence", f"{name} {version}" in " ".join(block[1].split()))
            holders = re.findall(r"Copyright (?:\(c\) )?(.+)", block[1])
            expect(f"both texts name the same holders of {file}: {holders}", holders == own[0]["Copyright"])

print("\n".join(problems) or f"{len(rows)} files are named")
sys.exit(1 if problems else 0)
