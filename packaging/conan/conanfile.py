"""Recipe for Conan 2: conan create packaging/conan"""

import os
import re

from conan import ConanFile
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load, rmdir


class MurvConan(ConanFile):
    name = "murv"
    description = "Data trees as text and binary files, and packets by layouts"
    license = "Apache-2.0"
    topics = ("serialization", "packets", "parser")
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False], "tool": [True, False]}
    default_options = {"shared": False, "tool": False}

    @property
    def _root(self):
        return os.path.join(self.recipe_folder, "..", "..")

    def set_version(self):
        text = load(self, os.path.join(self._root, "CMakeLists.txt"))
        self.version = re.search(r"project\(\s*murv\s+VERSION (\S+)", text).group(1)

    def export_sources(self):
        # What only tests and benches need is left where it is; so is what was built.
        excludes = (".*", "build*/*", "bench/*", "fuzz/*", "tests/*", "debian/*", "packaging/*")
        copy(self, "*", self._root, self.export_sources_folder, excludes=excludes)

    def layout(self):
        cmake_layout(self)

    def requirements(self):
        if self.options.tool:
            self.requires("cli11/2.4.2", visible=False)
            self.requires("nlohmann_json/3.11.3", visible=False)

    def validate(self):
        check_min_cppstd(self, 17)

    def generate(self):
        CMakeDeps(self).generate()
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["MURV_BUILD_SHARED"] = bool(self.options.shared)
        toolchain.cache_variables["MURV_BUILD_TOOLS"] = bool(self.options.tool)
        toolchain.cache_variables["MURV_BUILD_TESTS"] = False
        toolchain.cache_variables["MURV_BUILD_EXAMPLES"] = False
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()
        copy(self, "LICENSE", self.source_folder, os.path.join(self.package_folder, "licenses"))
        for folder in (os.path.join("lib", "cmake"), os.path.join("lib", "pkgconfig")):
            rmdir(self, os.path.join(self.package_folder, folder))

    def package_info(self):
        self.cpp_info.libs = ["murv"]
        self.cpp_info.set_property("cmake_file_name", "murv")
        self.cpp_info.set_property("cmake_target_name", "murv::murv")
        if not self.options.shared:
            self.cpp_info.defines = ["MURV_STATIC"]
            if self.settings.os in ("Linux", "FreeBSD"):
                self.cpp_info.system_libs = ["m"]
