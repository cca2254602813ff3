"""Builds the Python module with CMake, and packs it together with the libraries.

Where KIPCC_BUILD names a build folder, what was built there is packed.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

from setuptools import Distribution, setup
from setuptools.command.build_py import build_py
from setuptools.command.egg_info import egg_info

ROOT = pathlib.Path(__file__).resolve().parent
WHEEL = ROOT / "build/wheel"
PARTS = ["-DKIPCC_TESTS=OFF", "-DKIPCC_BENCH=OFF", "-DKIPCC_EXAMPLES=OFF", "-DKIPCC_PYTHON=ON"]


def cmake(*arguments):
    subprocess.run(["cmake", *map(str, arguments)], check=True)


def built():
    """A build folder with the module for this interpreter."""
    if "KIPCC_BUILD" in os.environ:
        return pathlib.Path(os.environ["KIPCC_BUILD"])
    cmake("--preset", "x86-64", "-S", ROOT, "-B", WHEEL, f"-DPython3_EXECUTABLE={sys.executable}", *PARTS)
    cmake("--build", WHEEL)
    return WHEEL


class Build(build_py):
    """Packs the module as CMake installs it, and the libraries beside it, by the names that the loader looks for."""

    def run(self):
        package, folder = pathlib.Path(self.build_lib) / "kipcc", built()
        shutil.rmtree(package, ignore_errors=True)
        with tempfile.TemporaryDirectory(dir=folder) as stage:
            for component in ("python", "runtime"):
                cmake("--install", folder, "--prefix", stage, "--component", component)
            [module] = pathlib.Path(stage).glob("lib/python*/*-packages/kipcc")
            shutil.copytree(module, package)
            libraries = list(pathlib.Path(stage).glob("lib/**/libkip*.so.*"))
            linked = {library.resolve() for library in libraries if library.is_symlink()}
            for library in libraries:
                if library not in linked:
                    shutil.copy(library, package)


class EggInfo(egg_info):
    """Keeps what setuptools notes about the package out of the source tree."""

    def initialize_options(self):
        super().initialize_options()
        (ROOT / "build").mkdir(exist_ok=True)
        self.egg_base = str(ROOT / "build")


class Binary(Distribution):
    def has_ext_modules(self):
        return True


setup(
    version=re.search(r"project\(kipcc VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text())[1],
    packages=["kipcc"],
    package_dir={"": "python"},
    distclass=Binary,
    cmdclass={"build_py": Build, "egg_info": EggInfo},
)
