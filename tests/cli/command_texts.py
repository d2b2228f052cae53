"""Checks that help texts, manual page and bash completion name the same commands, verbs and options, and that the
completion does its work in a real bash."""
import os
import pathlib
import re
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

# The completion at work. The program takes the languages from its table; the other two texts write them out.
languages = re.findall(r"[a-z]+", re.search(r"--language LANGUAGE(.*)", helps["caption"]).group(1))
expect("languages of the program", set(languages), {"automatic", "japanese", "english", "korean", "mandarin"})
expect("languages", complete("caption", "system", "--language", ""), set(languages))
expect("languages missing in the manual",
       set(languages) - set(re.findall(r"[a-z]+", re.search(r"the spoken language:\n(.*)", page).group(1))), set())
for language in languages:
    expect("--language", complete("caption", "system", "--language", language[:2]), {language})
expect("an option's value after =", complete("caption", "--translate", "=", "a"), {"apple"})
expect("nothing after =", complete("caption", "--translate", "="), {"off", "apple", "custom"})
expect("formats of captions", complete("caption", "system", "--format", ""), {"text", "jsonl"})
expect("formats of transcripts", complete("library", "export", "x", "--format", ""),
       {"md", "txt", "srt", "vtt", "json"})
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
