"""Tests packaging/install-packages with a dpkg-query, an apt-get and a sudo of its own. Nothing is installed."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PACKAGING = pathlib.Path(sys.argv[1])

LIST = """# A list.
[build]
compiler # a reason
library-dev

[build >=13]
newer-library-dev

[run]
library

[demo test]
recording

[demo]
server | other-server

[test]
library-dev
tool
"""


class InstallPackages(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.root = pathlib.Path(place.name)
        (self.root / "bin").mkdir()
        shutil.copy(PACKAGING / "install-packages", self.root)
        (self.root / "debian-packages.txt").write_text(LIST)
        self.system("ID=debian", "VERSION_ID=12")
        self.program("apt-get", 'echo "$*" >>"$CALLS"')
        self.program("sudo", 'exec "$@"')
        self.program("id", "echo 0")
        self.installed()

    def program(self, name, text):
        path = self.root / "bin" / name
        path.write_text(f"#!/bin/sh\n{text}\n")
        path.chmod(0o755)

    def system(self, *lines):
        """What the system says that it is."""
        (self.root / "os-release").write_text("\n".join(lines) + "\n")

    def installed(self, *lines):
        """What dpkg knows: "status package, what it provides"."""
        self.program("dpkg-query", "cat <<'TEXT'\n" + "\n".join(lines) + "\nTEXT")

    def run_script(self, *arguments, path=None):
        """The exit status, the output and what apt-get was called with."""
        calls = self.root / "calls"
        calls.write_text("")
        result = subprocess.run([self.root / "install-packages", *arguments], text=True, stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL,
                                env={"PATH": path or f"{self.root}/bin:{os.environ['PATH']}", "CALLS": str(calls),
                                     "OS_RELEASE": str(self.root / "os-release")})
        return result.returncode, result.stdout, calls.read_text().splitlines()

    def asked_for(self, *arguments):
        status, _, calls = self.run_script(*arguments)
        self.assertEqual(status, 0)
        return [word for word in calls[-1].split() if word[0] != "-"][1:] if calls else []

    def test_installs_what_building_and_running_need(self):
        self.assertEqual(self.asked_for(), ["compiler", "library-dev", "library"])

    def test_installs_what_the_named_purposes_need(self):
        for purposes, packages in ((["run"], ["library"]), (["test"], ["recording", "library-dev", "tool"]),
                                   (["demo"], ["recording", "server"]),
                                   (["build", "test"], ["compiler", "library-dev", "recording", "tool"])):
            with self.subTest(purposes):
                self.assertEqual(self.asked_for(*purposes), packages)

    def test_knows_what_only_newer_releases_have(self):
        everything = ["compiler", "library-dev", "newer-library-dev"]
        for system, packages in ((["ID=debian", 'VERSION_ID="13"'], everything), (["ID=debian", "VERSION_ID=14"], everything),
                                 (["ID=debian"], everything), (["ID=debian", "VERSION_ID=12"], everything[:2]),
                                 (["ID=other", "VERSION_ID=24.04"], everything[:2])):
            with self.subTest(system):
                self.system(*system)
                self.assertEqual(self.asked_for("build"), packages)

    def test_is_silent_when_nothing_is_missing(self):
        self.installed("installed compiler, ", "installed library-dev, ", "installed library, ")
        self.assertEqual(self.run_script(), (0, "", []))

    def test_counts_what_is_installed_and_what_that_provides(self):
        self.installed("installed gcc, compiler (= 12), c-compiler", "config-files library, ",
                       "installed library-dev:amd64, ")
        self.assertEqual(self.asked_for(), ["library"])

    def test_takes_another_package_that_will_do(self):
        self.installed("installed recording, ", "installed other-server, ")
        self.assertEqual(self.run_script("demo"), (0, "", []))

    def test_removes_nothing_and_recommends_nothing(self):
        _, said, calls = self.run_script()
        self.assertIn("Installing 3 Debian packages: compiler library-dev library", said)
        self.assertEqual(len(calls), 2)
        self.assertTrue(calls[0].startswith("update"))
        for option in ("-y", "--no-remove", "--no-install-recommends"):
            self.assertIn(option, calls[1].split())
        self.assertNotIn("--mark-auto", calls[1])

    def test_marks_what_apt_may_take_away_again(self):
        self.assertIn("--mark-auto", self.run_script("--automatic", "run")[2][1].split())

    def test_fails_with_apt(self):
        self.program("apt-get", 'echo "E: no network" >&2; exit 100')
        status, said, _ = self.run_script()
        self.assertEqual(status, 100)
        self.assertIn("E: no network", said)

    def test_says_what_is_missing_where_it_may_not_install(self):
        self.program("id", "echo 1000")
        for name in ("bash", "sed", "awk", "tr", "dirname", "grep", "cat"):
            (self.root / "bin" / name).symlink_to(shutil.which(name))
        (self.root / "bin/sudo").unlink()
        status, said, calls = self.run_script(path=f"{self.root}/bin")
        self.assertEqual(status, 1)
        self.assertIn("missing and sudo is not there to install them: compiler library-dev library", said)
        self.assertEqual(calls, [])

    def test_asks_sudo_where_that_is_needed(self):
        self.program("id", "echo 1000")
        self.program("sudo", 'echo "sudo $1" >>"$CALLS"; exec "$@"')
        _, _, calls = self.run_script()
        self.assertEqual([line for line in calls if line.startswith("sudo")], ["sudo apt-get", "sudo env"])

    def test_knows_every_purpose_that_it_is_asked_for(self):
        status, said, calls = self.run_script("bild")
        self.assertEqual((status, calls), (2, []))
        self.assertIn("build, run, demo, test", said)

    def test_lists_the_packages_of_the_real_list(self):
        shutil.copy(PACKAGING / "debian-packages.txt", self.root)
        scripts = {"run": ["build", "run"], "test": ["build", "run", "test"], "demo": ["demo"],
                   "packaging": ["packaging"], "deb": ["deb"], "fetch": ["fetch"]}
        for script, purposes in scripts.items():
            with self.subTest(script):
                status, said, calls = self.run_script("--list", *purposes)
                self.assertEqual((status, calls), (0, []))
                names = said.split()
                self.assertEqual(len(names), len(set(names)))
                self.assertTrue(names)
        _, plain, _ = self.run_script("--list")
        for package in ("pulseaudio", "npm", "openbox", "gnome-keyring", "clang", "debootstrap"):
            self.assertNotIn(package, plain.split())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
