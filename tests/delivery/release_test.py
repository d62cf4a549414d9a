#!/usr/bin/env python3
"""scripts/release, in a repository with the files that it changes."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

import delivered

FILES = ["CMakeLists.txt", "packaging/vcpkg/murv/vcpkg.json", "editors/vscode/package.json", "scripts/release"]
CHANGES = """# Changelog

## [Unreleased]

### Added

- A feature.

## [0.9.0] - 2024-01-31

### Fixed

- An old mistake.
"""
IDENTITY = {f"GIT_{who}_{what}": value for who in ("AUTHOR", "COMMITTER")
            for what, value in (("NAME", "tester"), ("EMAIL", "tester@localhost"))}

ENVIRONMENT = {**{name: value for name, value in os.environ.items() if not name.startswith("GIT_")}, **IDENTITY,
               "GIT_CONFIG_GLOBAL": "/dev/null", "GIT_CONFIG_SYSTEM": "/dev/null"}


def git(place, *arguments):
    return subprocess.run(["git", *arguments], cwd=place, env=ENVIRONMENT, capture_output=True, text=True,
                          check=True).stdout


def commit(place):
    git(place, "add", "--all")
    git(place, "commit", "--quiet", "--message", "a commit")


class Release(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(holder.cleanup)
        cls.first = pathlib.Path(holder.name) / "first"
        for name in FILES:
            (cls.first / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(delivered.SOURCES / name, cls.first / name)
        (cls.first / "CHANGELOG.md").write_text(CHANGES)
        git(cls.first, "init", "--quiet", "--initial-branch=main")
        commit(cls.first)

    def setUp(self):
        self.place = self.first.with_name("place")
        shutil.copytree(self.first, self.place)
        self.addCleanup(shutil.rmtree, self.place)

    def set_changes(self, text):
        (self.place / "CHANGELOG.md").write_text(text)

    def git(self, *arguments):
        return git(self.place, *arguments)

    def release(self, *arguments):
        return subprocess.run([self.place / "scripts/release", *arguments], env=ENVIRONMENT, capture_output=True,
                              text=True)

    def expect_refusal(self, message, *arguments):
        before = self.git("rev-parse", "HEAD") + self.git("status", "--porcelain")
        run = self.release(*arguments)
        self.assertEqual(run.returncode, 1)
        self.assertIn(message, run.stderr)
        self.assertEqual(self.git("rev-parse", "HEAD") + self.git("status", "--porcelain"), before)
        self.assertEqual(self.git("tag"), "")

    def test_sets_version_date_and_heading(self):
        run = self.release("7.8.9", "--date", "2031-05-06")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        cmake = (self.place / "CMakeLists.txt").read_text()
        self.assertIn("    VERSION 7.8.9\n", cmake)
        self.assertIn('(MURV_RELEASE_DATE "May 6, 2031")', cmake)
        for name in ("packaging/vcpkg/murv/vcpkg.json", "editors/vscode/package.json"):
            self.assertIn('"version": "7.8.9"', (self.place / name).read_text())
        self.assertEqual((self.place / "CHANGELOG.md").read_text(),
                         CHANGES.replace("## [Unreleased]\n", "## [Unreleased]\n\n## [7.8.9] - 2031-05-06\n"))

    def test_commits_and_tags_with_the_changes(self):
        self.release("7.8.9")
        self.assertEqual(self.git("log", "-1", "--format=%s"), "Release 7.8.9\n")
        self.assertEqual(self.git("status", "--porcelain"), "")
        self.assertEqual(self.git("rev-parse", "v7.8.9^{commit}"), self.git("rev-parse", "HEAD"))
        message = self.git("tag", "--list", "--format=%(contents)", "v7.8.9")
        self.assertEqual(message.strip(), "murv 7.8.9\n\n### Added\n\n- A feature.")

    def test_changes_little_else(self):
        self.release("7.8.9", "--date", "2031-05-06")
        lines = self.git("diff", "--numstat", "HEAD~").splitlines()
        self.assertEqual([line.split("\t")[:2] for line in lines], [["2", "0"], ["2", "2"], ["1", "1"], ["1", "1"]])

    def test_dry_run_changes_nothing(self):
        before = self.git("rev-parse", "HEAD")
        run = self.release("7.8.9", "--dry-run")
        self.assertEqual(run.returncode, 0)
        self.assertIn("would change CMakeLists.txt", run.stdout)
        self.assertIn("- A feature.", run.stdout)
        self.assertEqual(self.git("rev-parse", "HEAD") + self.git("status", "--porcelain") + self.git("tag"), before)

    def test_releases_follow_each_other(self):
        self.release("7.8.9")
        self.assertIn("nothing has changed", self.release("7.9.0").stderr)
        changes = (self.place / "CHANGELOG.md").read_text()
        self.set_changes(changes.replace("[Unreleased]\n", "[Unreleased]\n\n- New.\n"))
        commit(self.place)
        self.assertEqual(self.release("7.9.0").returncode, 0)
        self.assertEqual(self.git("tag"), "v7.8.9\nv7.9.0\n")

    def test_refuses_a_tree_with_changes(self):
        (self.place / "new").write_text("new\n")
        self.expect_refusal("not committed:\n?? new", "7.8.9")

    def test_refuses_what_is_no_later_version(self):
        for version in ("7.8", "v7.8.9", "7.8.9-rc1", "07.8.9"):
            self.expect_refusal("is no version", version)
        self.expect_refusal("is older than", "0.0.1")

    def test_refuses_a_version_that_is_there(self):
        self.set_changes(CHANGES.replace("0.9.0", "7.8.9"))
        commit(self.place)
        self.expect_refusal("a section [7.8.9] already", "7.8.9")
        self.git("tag", "v7.8.9")
        self.assertIn("a tag v7.8.9 already", self.release("7.8.9").stderr)

    def test_refuses_without_changes(self):
        self.set_changes(CHANGES.replace("- A feature.\n", ""))
        commit(self.place)
        self.expect_refusal("nothing has changed", "7.8.9")

    def test_the_copies_of_the_version_are_the_same(self):
        namespace = {"__name__": "release", "__file__": str(delivered.SOURCES / "scripts/release")}
        exec(compile((delivered.SOURCES / "scripts/release").read_text(), "release", "exec"), namespace)
        versions = {name: namespace["re"].search(pattern, (delivered.SOURCES / name).read_text())[2]
                    for name, pattern in namespace["VERSIONS"]}
        self.assertEqual(len(set(versions.values())), 1, versions)


if __name__ == "__main__":
    delivered.need("git")
    unittest.main()
