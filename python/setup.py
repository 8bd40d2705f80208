"""Builds the module with CMake, from the library's sources around this folder, or from the copy of
them that a source archive has in itself."""

import os
import pathlib
import re
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext
from setuptools.command.sdist import sdist

HERE = pathlib.Path(__file__).resolve().parent
LIBRARY = HERE / "library" if (HERE / "library").exists() else HERE.parent


def folders():
    """What the library's sources lie in."""
    text = (LIBRARY / "cmake" / "library.cmake").read_text(encoding="utf-8")
    return sorted({"cmake", "include", *re.findall(r"^ +([a-z]+)/", text, re.MULTILINE)})


def version():
    text = (LIBRARY / "CMakeLists.txt").read_text(encoding="utf-8")
    return re.search(r"project\(morandel VERSION ([0-9.]+)", text).group(1)


class BuildByCMake(build_ext):
    def build_extension(self, extension):
        folder = pathlib.Path(self.build_temp).resolve() / "library"
        target = pathlib.Path(self.get_ext_fullpath(extension.name)).resolve()
        ninja = ["-G", "Ninja"] if shutil.which("ninja") else []
        subprocess.run(
            ["cmake", "-S", LIBRARY, "-B", folder, *ninja, "-DCMAKE_BUILD_TYPE=Release",
             "-DMORANDEL_BUILD_COMMAND=OFF", "-DMORANDEL_BUILD_TESTS=OFF",
             "-DMORANDEL_BUILD_PYTHON=ON", f"-DMORANDEL_PYTHON_FOLDER={HERE}",
             f"-DPython3_EXECUTABLE={sys.executable}", "-DCMAKE_SHARED_LINKER_FLAGS_RELEASE=-s",
             "-DCMAKE_MODULE_LINKER_FLAGS_RELEASE=-s"], check=True)
        subprocess.run(["cmake", "--build", folder, "--target", "morandel_python"], check=True)
        target.parent.mkdir(parents=True, exist_ok=True)
        (built,) = (folder / "python").glob("_core*")
        shutil.copyfile(built, target)
        target.chmod(0o755)


class SourceArchive(sdist):
    """With the library in it."""

    def make_release_tree(self, base_dir, files):
        super().make_release_tree(base_dir, files)
        library = pathlib.Path(base_dir, "library")
        for folder in folders():
            shutil.copytree(LIBRARY / folder, library / folder)
        shutil.copy(LIBRARY / "CMakeLists.txt", library)
        for name in ["CMakeLists.txt", "source"]:
            source, target = HERE / name, pathlib.Path(base_dir, name)
            if source.is_dir():
                shutil.copytree(source, target, dirs_exist_ok=True)
            else:
                shutil.copy(source, target)


os.chdir(HERE)
setup(
    version=version(),
    ext_modules=[Extension("morandel._core", [])],
    cmdclass={"build_ext": BuildByCMake, "sdist": SourceArchive},
)
