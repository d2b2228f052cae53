"""Tests packaging/install-speech-runtime with a npm of its own, which serves small files, fails or waits. No network
is needed. With the folder of the real files as second argument, that npm serves those as well."""
import base64
import hashlib
import os
import pathlib
import platform
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PACKAGING = pathlib.Path(sys.argv[1])
REAL_FILES = pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else None
PROCESSOR = platform.machine()
MARKS = [b"<<ST_%d>>" % number for number in range(768)]
LIMIT = 300

# Packs what lies in packages/, as npm does: the name of the archive goes to the standard output.
NPM = """#!/bin/sh
for package; do :; done
echo "$package" >>"$STUB/asked"
if [ -e "$STUB/wait" ]; then
    echo "$package" >>"$STUB/waiting"
    read -r line <"$STUB/wait"
fi
if [ -e "$STUB/offline" ] || [ ! -d "$STUB/packages/$package" ]; then
    cat >&2 <<TEXT
npm $1 code ENOTFOUND
npm $1 network request to the registry failed, reason: getaddrinfo ENOTFOUND
npm $1   errno: -3007
npm $1 A complete log of this run can be found in:
npm $1     /home/user/.npm/_logs/debug-0.log
TEXT
    exit 1
fi
if [ -e "$STUB/garbled" ]; then
    head -c 1000 /dev/zero >archive.tgz
else
    tar -cf archive.tgz -C "$STUB/packages/$package" package
fi
echo archive.tgz
"""


def sha256(content):
    return hashlib.sha256(content).hexdigest()


def tokens_of(words):
    plain = [bytes([int(word[3:5], 16)]) if re.fullmatch(rb"<0x..>", word) else word for word in words] + MARKS
    return b"".join(base64.b64encode(word) + b" %d\n" % number for number, word in enumerate(plain))


def script_of(words):
    return b'const llama_vocab_base64 = "' + base64.b64encode(b"\n".join(words)) + b'";\nconst other = "eA==";\n'


def programs_without_npm():
    """A folder with every program there is but npm."""
    folder = tempfile.TemporaryDirectory()
    for path in ("/bin", "/usr/bin"):
        for program in os.scandir(path):
            target = pathlib.Path(folder.name, program.name)
            if program.name != "npm" and not target.is_symlink():
                target.symlink_to(program.path)
    return folder


PROGRAMS = programs_without_npm()


class Workplace:
    """A folder with the script, the files that a npm can serve, and a PATH."""

    def __init__(self):
        self.place = tempfile.TemporaryDirectory()
        self.root = pathlib.Path(self.place.name)
        self.stub = self.root / "stub"
        self.build = self.root / "build"
        self.folder = self.build / "speech"
        (self.stub / "packages").mkdir(parents=True)
        (self.root / "npm").mkdir()
        self.write_program("npm", NPM.replace("$1", "error"))
        self.path = f"{self.root}/npm:{PROGRAMS.name}"
        self.contents = {}

    def write_program(self, name, text):
        program = self.root / "npm" / name
        program.write_text(text)
        program.chmod(0o755)

    def serve(self, package, path, content):
        file = self.stub / "packages" / package / "package" / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content)

    def serve_small_files(self):
        scripts = self.root / "packaging"
        shutil.copytree(PACKAGING / "english-speech", scripts / "english-speech")
        shutil.copy(PACKAGING / "install-speech-runtime", scripts)
        words = [b"<unk>", b"<0x00>", b"<0x0A>", b"<0xFF>", "▁the".encode(), "語".encode(), b"+ /"]
        rows = []
        for processor, file, package, path, content in (
                (PROCESSOR, "libsherpa-onnx-c-api.so", "runtime@1", "libsherpa-onnx-c-api.so", b"interface"),
                (PROCESSOR, "libonnxruntime.so", "runtime@1", "libonnxruntime.so", b"engine" * 1000),
                ("another", "libonnxruntime.so", "runtime-another@1", "libonnxruntime.so", b"another"),
                ("any", "english-speech/encoder.onnx", "@the/network@2", "dist/encoder_model.onnx", b"encoder"),
                ("any", "english-speech/decoder.onnx", "@the/network@2", "dist/decoder_model.onnx", b"decoder"),
                ("any", "english-speech/tokens.txt", "words@3", "words.js", script_of(words)),
                ("any", "english-speech/voice-detector.onnx", "@the/voice@4", "voice.onnx", b"voice"),
                ("any", "english-speech/LICENSE", "-", "english-speech/LICENSE",
                 (scripts / "english-speech/LICENSE").read_bytes())):
            if package != "-":
                self.serve(package, path, content)
            if path == "words.js":
                content = tokens_of(words)
            rows.append(f"{sha256(content)} {processor} {file} {package} {path}")
            if processor != "another":
                self.contents[file] = content
        (scripts / "speech-files.txt").write_text("# Small files\n" + "\n".join(rows) + "\n")
        self.script = scripts / "install-speech-runtime"

    def start(self, *arguments):
        return subprocess.Popen([str(self.script), *arguments, str(self.folder)], stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                env={"PATH": self.path, "STUB": str(self.stub), "LC_ALL": "C.UTF-8"})

    def run(self, *arguments):
        """The exit status and what was said."""
        process = self.start(*arguments)
        said, _ = process.communicate(timeout=LIMIT)
        return process.returncode, said

    def without_npm(self):
        self.path = PROGRAMS.name

    def flag(self, name):
        (self.stub / name).touch()

    def asked(self):
        """What npm was asked for since the last time."""
        file = self.stub / "asked"
        if not file.exists():
            return []
        lines = file.read_text().split()
        file.unlink()
        return sorted(lines)


class InstallSpeechRuntime(unittest.TestCase):
    def setUp(self):
        self.work = Workplace()
        self.work.serve_small_files()
        self.runtime = ["runtime@1"]
        self.english = ["@the/network@2", "@the/voice@4", "words@3"]
        self.libraries = ["libonnxruntime.so", "libsherpa-onnx-c-api.so"]

    def tearDown(self):
        self.work.place.cleanup()

    def assert_whole(self, files=None):
        """The folder holds these files and nothing lies beside it."""
        contents = {file: self.work.contents[file] for file in files or self.work.contents}
        self.assertEqual(os.listdir(self.work.build), ["speech"])
        found = {str(path.relative_to(self.work.folder)): path.read_bytes()
                 for path in self.work.folder.rglob("*") if path.is_file() and path.name != ".verified"}
        self.assertEqual(found, contents)

    def assert_nothing(self):
        self.assertEqual(list(self.work.build.iterdir()), [])

    def bring_all(self):
        self.assertEqual(self.work.run()[0], 0)
        self.assert_whole()
        self.work.asked()

    def test_brings_every_file_of_this_processor(self):
        status, said = self.work.run()
        self.assertEqual(status, 0)
        self.assertIn("Fetching", said)
        self.assertNotIn("missing", said)
        self.assertEqual(self.work.asked(), sorted(self.runtime + self.english))
        self.assert_whole()
        self.assertTrue(os.access(self.work.folder / "libonnxruntime.so", os.X_OK))
        self.assertEqual(self.work.folder.stat().st_mode & 0o755, 0o755)

    def test_is_silent_when_all_is_there(self):
        self.bring_all()
        self.assertEqual(self.work.run(), (0, ""))
        self.assertEqual(self.work.asked(), [])
        (self.work.folder / ".verified").unlink()
        self.assertEqual(self.work.run(), (0, ""))
        self.work.without_npm()
        self.assertEqual(self.work.run(), (0, ""))
        self.assert_whole()

    def test_check_says_whether_something_is_to_be_fetched(self):
        self.assertEqual(self.work.run("--check"), (1, ""))
        self.assertFalse(self.work.build.exists())
        self.bring_all()
        self.assertEqual(self.work.run("--check"), (0, ""))
        (self.work.folder / "english-speech/LICENSE").unlink()
        self.assertEqual(self.work.run("--check"), (1, ""))
        self.assertEqual(self.work.asked(), [])

    def test_says_what_is_missing_without_npm(self):
        self.work.without_npm()
        status, said = self.work.run()
        self.assertEqual(status, 0)
        self.assertIn("speech runtime is missing", said)
        self.assertIn("npm, which fetches it, is not installed", said)
        self.assertIn("PocketSphinx", said)
        self.assertNotIn("Fetching", said)
        self.assert_nothing()

    def test_installs_npm_only_where_something_is_to_be_fetched(self):
        installer = self.work.root / "packaging/install-packages"
        installer.write_text('#!/bin/sh\necho "$*" >"$STUB/installed"\nexit 1\n')
        installer.chmod(0o755)
        self.bring_all()
        self.work.without_npm()
        self.assertEqual(self.work.run("--install-npm"), (0, ""))
        self.assertFalse((self.work.stub / "installed").exists())
        (self.work.folder / "libonnxruntime.so").unlink()
        status, said = self.work.run("--install-npm")
        self.assertEqual(status, 0)
        self.assertEqual((self.work.stub / "installed").read_text(), "--automatic fetch\n")
        self.assertIn("npm, which fetches it, is not installed", said)

    def test_gives_the_reason_of_npm(self):
        for word in ("error", "ERR!"):
            with self.subTest(word):
                self.work.write_program("npm", NPM.replace("$1", word))
                self.work.flag("offline")
                status, said = self.work.run()
                self.assertEqual(status, 0)
                self.assertIn(f"npm {word} network request to the registry failed", said)
                self.assertNotIn("_logs", said)
                self.assertNotIn("errno:", said)
                self.assertIn("PocketSphinx", said)
                self.assert_nothing()

    def test_keeps_the_runtime_of_an_older_folder(self):
        self.bring_all()
        shutil.rmtree(self.work.folder / "english-speech")
        (self.work.folder / ".verified").unlink()
        before = [os.stat(self.work.folder / library).st_ino for library in self.libraries]
        self.work.without_npm()
        status, said = self.work.run()
        self.assertEqual(status, 0)
        self.assertIn("English network is missing", said)
        self.assert_whole(self.libraries)
        self.work.path = f"{self.work.root}/npm:{PROGRAMS.name}"
        self.assertEqual(self.work.run()[0], 0)
        self.assertEqual(self.work.asked(), self.english)
        self.assert_whole()
        self.assertEqual([os.stat(self.work.folder / library).st_ino for library in self.libraries], before)

    def test_mends_a_changed_or_missing_file(self):
        self.bring_all()
        for file, content in self.work.contents.items():
            with self.subTest(file):
                path = self.work.folder / file
                times = path.stat()
                # As long as before and as old.
                path.write_bytes(content[:-1] + bytes([content[-1] ^ 1]))
                os.utime(path, ns=(times.st_atime_ns, times.st_mtime_ns))
                part = self.english if "/" in file else self.runtime
                self.assertEqual(self.work.run()[0], 0)
                self.assertEqual(self.work.asked(), part)
                self.assert_whole()
                path.unlink()
                self.assertEqual(self.work.run()[0], 0)
                self.assertEqual(self.work.asked(), part)
                self.assert_whole()

    def test_leaves_no_damaged_part_that_cannot_be_mended(self):
        self.bring_all()
        self.work.without_npm()
        (self.work.folder / "english-speech/encoder.onnx").write_bytes(b"damage")
        status, said = self.work.run()
        self.assertEqual(status, 0)
        self.assertIn("English network is missing", said)
        self.assert_whole(self.libraries)
        (self.work.folder / "libonnxruntime.so").write_bytes(b"damage")
        status, said = self.work.run()
        self.assertEqual(status, 0)
        self.assertIn("speech runtime is missing", said)
        self.assert_nothing()

    def test_brings_the_english_network_as_a_whole_or_not_at_all(self):
        for package in self.english:
            with self.subTest(package):
                hidden = self.work.stub / "hidden"
                (self.work.stub / "packages" / package).rename(hidden)
                status, said = self.work.run()
                self.assertEqual(status, 0)
                self.assertIn("English network is missing", said)
                self.assertIn(package, said.split("English network is missing")[1])
                self.assert_whole(self.libraries)
                hidden.rename(self.work.stub / "packages" / package)
                self.bring_all()
                shutil.rmtree(self.work.folder)

    def test_brings_nothing_without_the_runtime(self):
        shutil.rmtree(self.work.stub / "packages/runtime@1")
        status, said = self.work.run()
        self.assertEqual(status, 0)
        self.assertIn("speech runtime is missing", said)
        self.assert_nothing()

    def test_refuses_files_it_does_not_know(self):
        self.work.serve("@the/voice@4", "voice.onnx", b"vOice")
        status, said = self.work.run()
        self.assertEqual(status, 0)
        self.assertIn("voice.onnx of @the/voice@4 is not the file we know", said)
        self.assert_whole(self.libraries)
        self.work.serve("runtime@1", "libonnxruntime.so", b"")
        shutil.rmtree(self.work.folder)
        self.assertIn("libonnxruntime.so of runtime@1 is not the file we know", self.work.run()[1])
        self.assert_nothing()

    def test_says_that_an_archive_cannot_be_read(self):
        self.work.flag("garbled")
        status, said = self.work.run()
        self.assertEqual(status, 0)
        self.assertIn("The archive of runtime@1 cannot be read", said)
        self.assert_nothing()

    def test_leaves_nothing_half_made_when_it_is_killed(self):
        os.mkfifo(self.work.stub / "wait")
        process = self.work.start()
        waiting = self.work.stub / "waiting"
        deadline = time.monotonic() + LIMIT
        while not waiting.exists() or len(waiting.read_text().split()) < 4:
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.01)
        process.send_signal(signal.SIGKILL)
        process.wait(timeout=LIMIT)
        self.assertFalse(self.work.folder.exists())
        self.assertEqual(len(os.listdir(self.work.build)), 1)
        # Its children live on. They must not delay the next run, nor spoil it when they go on at last.
        gate = os.open(self.work.stub / "wait", os.O_RDWR)
        (self.work.stub / "wait").unlink()
        self.bring_all()
        os.write(gate, b"\n" * 4)
        process.stdout.read()
        os.close(gate)
        process.stdout.close()
        self.assert_whole()

    def test_goes_back_when_it_was_killed_between_its_renamings(self):
        self.bring_all()
        left = self.work.build / ".speech.aB1xyz"
        (left / "new").mkdir(parents=True)
        self.work.folder.rename(left / "old")
        self.work.without_npm()
        self.work.run()
        self.assert_whole()

    def test_runs_at_the_same_moment_do_the_work_once(self):
        processes = [self.work.start() for _ in range(6)]
        said = [process.communicate(timeout=LIMIT)[0] for process in processes]
        self.assertEqual([process.returncode for process in processes], [0] * 6)
        self.assertEqual(sum("Fetching" in text for text in said), 1)
        self.assertEqual(self.work.asked(), sorted(self.runtime + self.english))
        self.assert_whole()

    def test_touches_no_folder_with_other_files(self):
        self.work.folder.mkdir(parents=True)
        (self.work.folder / "letter.txt").write_text("mine")
        status, said = self.work.run()
        self.assertEqual(status, 2)
        self.assertIn("letter.txt", said)
        self.assertEqual(os.listdir(self.work.folder), ["letter.txt"])
        self.assertEqual(self.work.asked(), [])

    def test_says_that_there_is_no_runtime_for_a_processor(self):
        self.work.write_program("uname", "#!/bin/sh\necho riscv64\n")
        status, said = self.work.run()
        self.assertEqual(status, 0)
        self.assertIn("no speech runtime for riscv64", said)
        self.assertFalse(self.work.build.exists())
        self.assertEqual(self.work.run("--check"), (0, ""))


class RealFiles(unittest.TestCase):
    """The list names the files that the packages hold."""

    @unittest.skipUnless(REAL_FILES, "the real files are not there")
    def test_are_brought(self):
        work = Workplace()
        self.addCleanup(work.place.cleanup)
        work.script = PACKAGING / "install-speech-runtime"
        rows = [line.split() for line in (PACKAGING / "speech-files.txt").read_text().splitlines() if line[0] != "#"]
        for _, processor, file, package, path in rows:
            if processor in (PROCESSOR, "any") and package != "-":
                content = (REAL_FILES / file).read_bytes()
                if file == "english-speech/tokens.txt":
                    words = [base64.b64decode(line.split()[0]) for line in content.splitlines()[:-len(MARKS)]]
                    # The network's bytes are words 3 to 258.
                    words[3:259] = [b"<0x%02X>" % byte for byte in range(256)]
                    content = script_of(words)
                work.serve(package, path, content)
        status, said = work.run()
        self.assertEqual(status, 0, said)
        self.assertNotIn("missing", said)
        for digest, processor, file, *_ in rows:
            if processor in (PROCESSOR, "any"):
                self.assertEqual(sha256((work.folder / file).read_bytes()), digest, file)
        self.assertEqual(work.run(), (0, ""))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
