"""Builds from the tree that this file is in: conan create packaging/conan"""

import os
import re

from conan import ConanFile
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load

ROOT = os.path.join(os.pardir, os.pardir)


class Morandel(ConanFile):
    name = "morandel"
    description = "Formulas as text to numbers and texts"
    # The owner has not chosen a license.
    package_type = "library"
    settings = "os", "compiler", "build_type", "arch"
    options = {"shared": [True, False]}
    default_options = {"shared": True}

    def set_version(self):
        project = load(self, os.path.join(self.recipe_folder, ROOT, "CMakeLists.txt"))
        self.version = re.search(r"project\(morandel VERSION ([0-9.]+)", project).group(1)

    def export_sources(self):
        root = os.path.normpath(os.path.join(self.recipe_folder, ROOT))
        sources = load(self, os.path.join(root, "cmake", "library.cmake"))
        folders = {"cmake", "examples", "include", *re.findall(r"^ +([a-z]+)/", sources, re.MULTILINE)}
        copy(self, "CMakeLists.txt", root, self.export_sources_folder)
        for folder in sorted(folders):
            copy(self, folder + "/*", root, self.export_sources_folder)

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["MORANDEL_BUILD_COMMAND"] = "OFF"
        toolchain.cache_variables["MORANDEL_BUILD_TESTS"] = "OFF"
        toolchain.generate()
        CMakeDeps(self).generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()

    def package_info(self):
        # The CMake package that is installed has both targets.
        self.cpp_info.set_property("cmake_find_mode", "none")
        self.cpp_info.builddirs = [os.path.join("lib", "cmake", "morandel")]
        self.cpp_info.libs = ["morandel"]
        if not self.options.shared:
            self.cpp_info.defines = ["MORANDEL_STATIC"]
