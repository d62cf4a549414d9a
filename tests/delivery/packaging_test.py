#!/usr/bin/env python3
"""The files for vcpkg and Conan, without these programs: what they call is played by stand-ins that write down calls.

So the tests see that both take files and options that exist, not that the programs accept them.
"""

import fnmatch
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import types
import unittest

import delivered

PACKAGING = delivered.SOURCES / "packaging"
CMAKE = sys.argv.pop(1)

VCPKG = """
cmake_minimum_required(VERSION 3.25)
function(vcpkg_check_features)
    set(features -DMURV_BUILD_TOOLS=ON PARENT_SCOPE)
endfunction()
%s
set(CURRENT_PACKAGES_DIR /nowhere)
set(VCPKG_LIBRARY_LINKAGE dynamic)
set(FEATURES core tool)
include(%s)
"""
NOTED = ["cmake_configure", "cmake_install", "cmake_config_fixup", "fixup_pkgconfig", "copy_tools", "install_copyright"]


def cmake_options():
    """The options and settings of CMakeLists.txt."""
    return re.findall(r"^(?:option|set)\((MURV_\w+)", (delivered.SOURCES / "CMakeLists.txt").read_text(), re.MULTILINE)


class Vcpkg(unittest.TestCase):
    def test_manifest(self):
        manifest = json.loads((PACKAGING / "vcpkg/murv/vcpkg.json").read_text())
        self.assertEqual(manifest["name"], "murv")
        self.assertEqual(manifest["features"]["tool"]["dependencies"], ["cli11", "nlohmann-json"])

    def test_port_takes_options_and_files_that_exist(self):
        with tempfile.TemporaryDirectory() as directory:
            script = pathlib.Path(directory) / "script.cmake"
            noted = "\n".join(f'function(vcpkg_{name})\nmessage("{name} ${{ARGN}}")\nendfunction()' for name in NOTED)
            script.write_text(VCPKG % (noted, PACKAGING / "vcpkg/murv/portfile.cmake"))
            run = subprocess.run([CMAKE, "-P", script], capture_output=True, text=True, check=True)
        calls = dict(line.split(" ", 1) for line in run.stderr.splitlines() if " " in line)
        self.assertIn(f"SOURCE_PATH;{delivered.SOURCES};", calls["cmake_configure"])
        options = dict(re.findall(r"-D(\w+)=(\w+)", calls["cmake_configure"]))
        self.assertEqual(options, {"MURV_BUILD_TESTS": "OFF", "MURV_BUILD_EXAMPLES": "OFF", "MURV_BUILD_SHARED": "1",
                                   "MURV_BUILD_TOOLS": "ON"})
        self.assertLessEqual(set(options), set(cmake_options()))
        self.assertEqual(calls["install_copyright"], f"FILE_LIST;{delivered.SOURCES}/LICENSE")
        self.assertEqual(calls["copy_tools"], "TOOL_NAMES;murv;AUTO_CLEAN")


def copied(_, pattern, source, target, excludes=()):
    """Conan's copy: patterns and exclusions are of paths below the source."""
    for path in pathlib.Path(source).resolve().rglob("*"):
        name = str(path.relative_to(pathlib.Path(source).resolve()))
        if path.is_file() and fnmatch.fnmatch(name, pattern) and not any(fnmatch.fnmatch(name, x) for x in excludes):
            (pathlib.Path(target) / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(path, pathlib.Path(target) / name)


class Toolchain:
    def __init__(self, _):
        self.cache_variables = {}
        Toolchain.last = self

    def generate(self):
        pass


def conan_modules():
    """Modules of the names that the recipe imports."""
    parts = {"conan": {"ConanFile": object}, "conan.tools": {}, "conan.tools.build": {"check_min_cppstd": None},
             "conan.tools.cmake": {"CMake": None, "CMakeDeps": Toolchain, "CMakeToolchain": Toolchain,
                                   "cmake_layout": None},
             "conan.tools.files": {"copy": copied, "load": lambda _, path: pathlib.Path(path).read_text(),
                                   "rmdir": None}}
    modules = {}
    for name, members in parts.items():
        modules[name] = types.ModuleType(name)
        vars(modules[name]).update(members)
    return modules


class Conan(unittest.TestCase):
    def setUp(self):
        sys.modules.update(conan_modules())
        path = PACKAGING / "conan/conanfile.py"
        namespace = {}
        exec(compile(path.read_text(), str(path), "exec"), namespace)
        self.recipe = namespace["MurvConan"]()
        self.recipe.recipe_folder = str(path.parent)

    def test_version_is_that_of_cmake(self):
        self.recipe.set_version()
        version = re.search(r"^    VERSION (\S+)$", (delivered.SOURCES / "CMakeLists.txt").read_text(), re.MULTILINE)
        self.assertEqual(self.recipe.version, version[1])

    def test_exported_sources_suffice(self):
        self.recipe.options = types.SimpleNamespace(shared=True, tool=True)
        self.recipe.generate()
        options = Toolchain.last.cache_variables
        self.assertLessEqual(set(options), set(cmake_options()))
        with tempfile.TemporaryDirectory() as directory:
            self.recipe.export_sources_folder = f"{directory}/sources"
            self.recipe.export_sources()
            self.assertFalse((pathlib.Path(directory) / "sources/tests").exists())
            run = subprocess.run([CMAKE, "-S", f"{directory}/sources", "-B", f"{directory}/build",
                                  *(f"-D{name}={'ON' if value else 'OFF'}" for name, value in options.items())],
                                 capture_output=True, text=True)
            self.assertEqual(run.returncode, 0, run.stderr)


if __name__ == "__main__":
    unittest.main()
