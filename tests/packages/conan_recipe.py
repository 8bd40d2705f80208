"""Runs the Conan recipe with what it imports standing here in short; there is no network to have
Conan by. Sources are exported, built and packaged as it says.

usage: conan_recipe.py RECIPE FOLDER
"""

import glob
import importlib.util
import os
import pathlib
import shutil
import subprocess
import sys
import types

recipe_file, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
variables = {}


class ConanFile:
    recipe_folder = str(recipe_file.parent)
    export_sources_folder = str(folder / "sources")


class Toolchain:
    def __init__(self, conanfile):
        self.cache_variables = {}

    def generate(self):
        variables.update(self.cache_variables)


class Dependencies:
    def __init__(self, conanfile):
        pass

    def generate(self):
        pass


def run(*command):
    subprocess.run([str(part) for part in command], check=True, stdout=subprocess.DEVNULL)


class CMake:
    def __init__(self, conanfile):
        self.build_folder = folder / "build"

    def configure(self):
        run("cmake", "-G", "Ninja", "-S", folder / "sources", "-B", self.build_folder,
            "-DCMAKE_BUILD_TYPE=Release", *(f"-D{name}={value}" for name, value in variables.items()))

    def build(self):
        run("cmake", "--build", self.build_folder)

    def install(self):
        run("cmake", "--install", self.build_folder, "--prefix", folder / "package")


def copy(conanfile, pattern, source, target):
    found = glob.glob(os.path.join(source, pattern), recursive=True)
    assert found, pattern
    for name in found:
        place = pathlib.Path(target, os.path.relpath(name, source))
        if os.path.isdir(name):
            shutil.copytree(name, place, dirs_exist_ok=True)
        else:
            place.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(name, place)


def module(name, **members):
    sys.modules[name] = types.ModuleType(name)
    vars(sys.modules[name]).update(members)


module("conan", ConanFile=ConanFile)
module("conan.tools")
module("conan.tools.cmake", CMake=CMake, CMakeDeps=Dependencies, CMakeToolchain=Toolchain,
       cmake_layout=lambda conanfile: None)
module("conan.tools.files", copy=copy,
       load=lambda conanfile, path: pathlib.Path(path).read_text(encoding="utf-8"))

spec = importlib.util.spec_from_file_location("conanfile", recipe_file)
conanfile = importlib.util.module_from_spec(spec)
sys.dont_write_bytecode = True
spec.loader.exec_module(conanfile)
recipe = conanfile.Morandel()
assert recipe.name == "morandel" and set(recipe.default_options) == set(recipe.options)
recipe.set_version()
for step in (recipe.export_sources, recipe.layout, recipe.generate, recipe.build, recipe.package):
    step()
print(recipe.version)
