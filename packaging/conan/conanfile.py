"""Conan 2: conan create packaging/conan, from a checkout."""

import os
import re

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy

CHECKOUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")


class ZemTime(ConanFile):
    name = "zemtime"
    license = "MIT"
    description = "Time values, clocks, calendar records, durations and time ranges"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False], "fPIC": [True, False]}
    default_options = {"shared": False, "fPIC": True}

    def set_version(self):
        with open(os.path.join(CHECKOUT, "Zem", "Os", "ZemTime.h"), encoding="utf-8") as file:
            self.version = ".".join(re.findall(r"define ZEM_TIME_VERSION_\w+ (\d+)", file.read()))

    def export_sources(self):
        for pattern in ("Zem/*", "cmake/*", "tools/*", "CMakeLists.txt", "LICENSE"):
            copy(self, pattern, CHECKOUT, self.export_sources_folder)

    def validate(self):
        if self.settings.os == "Windows":
            raise ConanInvalidConfiguration("needs POSIX and a long of 64 bits")

    def layout(self):
        cmake_layout(self)

    def generate(self):
        CMakeDeps(self).generate()
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["ZEMTIME_BUILD_TOOLS"] = False
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        copy(self, "LICENSE", self.source_folder, os.path.join(self.package_folder, "licenses"))
        CMake(self).install()

    def package_info(self):
        debug = "d" if self.settings.build_type == "Debug" else ""
        self.cpp_info.libs = [f"zemtime{debug}"]
        self.cpp_info.set_property("cmake_file_name", "ZemTime")
        self.cpp_info.set_property("cmake_target_name", "ZemTime::zemtime")
        self.cpp_info.set_property("pkg_config_name", "zemtime")
        if self.options.shared:
            self.cpp_info.defines = ["ZEM_SHARED"]
