"""Checks that help texts, manual page and bash completion name the same commands, verbs, options and choices, that the pages
name settings that there are, and that the completion does its work in a real bash."""
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

program, completion, manual = (os.path.abspath(path) for path in sys.argv[1:4])
home = tempfile.TemporaryDirectory()
environment = {**os.environ, "HOME": home.name, "XDG_DATA_HOME": home.name + "/data",
               "XDG_CONFIG_HOME": home.name + "/config", "LC_ALL": "C.UTF-8",
               "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nowhere/bus"}
checked = 0
problems = []


def expect(description, actual, wanted):
    global checked
    checked += 1
    if actual != wanted:
        problems.append(f"{description}: {sorted(actual)}, not {sorted(wanted)}")


def run(*arguments):
    return subprocess.run([program, *arguments], env=environment, capture_output=True, text=True, check=True).stdout


def refusal(*arguments):
    """What the program says of a wrong command line."""
    result = subprocess.run([program, *arguments], env=environment, capture_output=True, text=True)
    if result.returncode != 2:
        problems.append(f"{arguments}: status {result.returncode}")
    return result.stderr


def known_choices(*arguments):
    """The values that the program knows for the option at the end, which it lists when it is given another one."""
    listed = re.search("（可用 (.+)）", refusal(*arguments, "?"))
    return set(listed[1].split("、")) if listed else set()


def complete(*words):
    """What bash offers for the last word."""
    script = """source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMPREPLY=()
_lumaphone_cli
((${#COMPREPLY[@]})) && printf '%s\\n' "${COMPREPLY[@]}"; true"""
    result = subprocess.run(["bash", "--norc", "-c", script, "bash", completion, program, *words], env=environment,
                            capture_output=True, text=True, cwd=home.name)
    if result.stderr or result.returncode:
        problems.append(f"completing {words}: {result.stderr}")
    return set(result.stdout.splitlines())


def options(text):
    return set(re.findall(r"(?<![-\w])--[a-z][-a-z]*", text))


def words(text):
    """Lower-case words, as people type them: no part of an option or of a setting."""
    return set(re.findall(r"(?<![-\w.])[a-z][A-Za-z]*(?![-\w.])", text, re.ASCII))


def entry(text, beginning, end):
    """The part of a text from a pattern on, without it, up to another one."""
    found = re.search(beginning, text, re.MULTILINE)
    return re.split(end, text[found.end():], 1, re.MULTILINE)[0] if found else ""


def bold_words(markup):
    """The words that a part of the manual prints in bold."""
    bold = []
    for macro, line in re.findall(r"^\.(B|BR|RB|BI) (.*)$", markup, re.MULTILINE):
        parts = shlex.split(line.replace("\\-", "-"))
        bold += {"B": parts, "RB": parts[1::2]}.get(macro, parts[::2])
    return words("\n".join(bold))


# What the program itself says.
overview = run("--help")
commands = re.findall(r"^  ([a-z]+)\s", overview.split("指令：")[1].split("選項：")[0], re.MULTILINE)
helps = {command: run(command, "--help") for command in commands}
verbs = {command: set(re.findall(rf"lumaphone-cli {command} ([a-z]+)\b", text)) for command, text in helps.items()}
verbs["caption"] = set()

# The manual page, without its markup.
page = pathlib.Path(manual).read_text(encoding="utf-8")
page = re.sub(r"^\.(B|I|BR|RB|BI|RI|IR|TP|br|PP|nf|fi)\b ?", "", page, flags=re.MULTILINE).replace("\\-", "-")
page = page.replace('"', "")
synopsis = page.split(".SH SYNOPSIS")[1].split(".SH DESCRIPTION")[0]

expect("commands in the manual's synopsis", set(re.findall(r"^lumaphone-cli ([a-z]+)", synopsis, re.MULTILINE)),
       set(commands))
expect("commands that are completed", complete(""), set(commands) | {"--help", "--version"})
for command in commands:
    part = re.split(r"^lumaphone-cli ", synopsis, flags=re.MULTILINE)
    line = "".join(text for text in part if text.startswith(command))
    written = set(re.findall(r"(?<![-\w])[a-z]+(?![-\w])", line)) - {command} - {"br"}
    expect(f"verbs of {command} in the synopsis", written if verbs[command] else set(), verbs[command])
    if verbs[command]:
        expect(f"verbs of {command} that are completed", complete(command, ""), verbs[command] | {"--help"})
    offered = complete(command, "--") if not verbs[command] else set().union(
        *(complete(command, verb, "x", "--") | complete(command, verb, "--") for verb in verbs[command]))
    offered = {option for option in offered if option.startswith("--")}
    said = options(helps[command])
    expect(f"options of {command} that are completed", offered | {"--help"}, said | {"--help"})
    expect(f"options of {command} missing in the manual", {o for o in said if o not in options(page)}, set())
known = set().union(*(options(text) for text in helps.values()), options(overview))
expect("options in the manual that no command has", options(page) - known, set())

# The values of options: the program's own lists, as the texts name them and as they are completed.
source = pathlib.Path(manual).read_text(encoding="utf-8")
formats = known_choices("library", "export", "x", "--format")
texts = known_choices("library", "export", "x", "--format", "txt", "--text")
formats_with_text = {form for form in formats
                     if "--text" not in refusal("library", "export", "x", "--format", form, "--text", "?")}
expect("formats of transcripts", formats, {"md", "txt", "srt", "vtt", "json"})
expect("texts of transcripts", texts, {"source", "translation", "bilingual"})
# The option behind its command, what else its help names, the beginning of its entry in the manual, and what else that may name.
for line, also_helped, heading, also_described in (
        ("caption system --language", set(), r"^\.BI \\-\\-language.*", set()),
        ("caption system --format", set(), r"^\.BI \\-\\-format.*", set()),
        ("caption system --translate", set(), r"^\.BI \\-\\-translate.*", set()),
        ("glossary add x --mode", set(), r"^\.BI \"glossary add.*", verbs["glossary"]),
        ("library export x --format", set(), r"^\.BI \"library export.*", texts),
        ("library export x --format txt --text", formats_with_text, r"^\.BI \"library export.*", formats)):
    arguments = line.split()
    choices = known_choices(*arguments)
    expect(f"values of {line} that are completed", complete(*arguments, ""), choices)
    helped = entry(helps[arguments[0]], rf"^  {arguments[-1]} [A-Z]+", r"^  -|^$")
    expect(f"values of {line} in the help", words(helped), choices | also_helped)
    expect(f"values of {line} in the manual",
           bold_words(entry(source, heading, r"^\.TP|^\.SH|^\.PP")) - (also_described - choices), choices)

# The settings, which the program lists.
keys = {line.split("\t")[0] for line in run("settings", "list").splitlines()}
for verb in ("get", "set"):
    expect(f"settings that are completed behind {verb}", complete("settings", verb, ""), keys)
pages = [source, *helps.values()]
pages += [path.read_text(encoding="utf-8") for path in pathlib.Path(manual).parent.parent.glob("README*.md")]
named = set().union(*(re.findall(r"(?<![\w./])lumaphone\.[a-z][A-Za-z.]*[A-Za-z]", text) for text in pages))
expect("settings that are named but not there", named - keys, set())
expect("settings that the pages name", named & {"lumaphone.processingMode", "lumaphone.provider.model"},
       {"lumaphone.processingMode", "lumaphone.provider.model"})

# The completion at work.
expect("the beginning of a value", complete("caption", "system", "--language", "ja"), {"japanese"})
expect("an option's value after =", complete("caption", "--translate", "=", "a"), {"apple"})
expect("nothing after =", complete("caption", "--translate", "="), {"off", "apple", "custom"})
pathlib.Path(home.name, "名 字.yaml").touch()
expect("file names", complete("glossary", "import", "名"), {"名 字.yaml"})
expect("settings", complete("settings", "get", "lumaphone.provider.m"), {"lumaphone.provider.model"})
expect("free text", complete("glossary", "add", "tea", "--note", ""), set())
record = {"id": "12345678-9ABC-4EF0-8234-56789ABCDEF0"}
index = pathlib.Path(home.name, "data/Lumaphone/Transcripts/index.json")
index.parent.mkdir(parents=True, exist_ok=True)
index.write_text('[{"id": "%s", "title": "t", "note": "", "createdAt": "2026-03-01T09:30:00Z", '
                 '"sourceLanguage": "english", "targetLanguage": "zh-TW", "processingMode": "appleMode", '
                 '"providerName": "p", "lineCount": 0, "folderName": "f", "searchText": ""}]' % record["id"])
expect("ids", complete("library", "show", "1234"), {record["id"]})

print("\n".join(problems) or f"{checked} comparisons hold")
sys.exit(1 if problems or not checked else 0)
