"""Makes the wheel: CMake builds the module and puts the libraries into the package."""

import os
import pathlib
import re
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

SOURCE = pathlib.Path(__file__).resolve().parent
BUILD = SOURCE / "build/wheel"


class CMakeBuild(build_ext):
    """Configures, builds and installs the component "python" where the wheel is collected."""

    def run(self):
        target = pathlib.Path(self.build_lib).resolve()
        definitions = {
            "CMAKE_BUILD_TYPE": "Release",
            "CMAKE_INSTALL_PREFIX": target,
            "UXTREE_BUILD_PYTHON": "ON",
            "UXTREE_BUILD_TESTS": "OFF",
            "UXTREE_BUILD_TOOL": "OFF",
            "UXTREE_PYTHON": sys.executable,
            "UXTREE_PYTHON_DIR": ".",
            "UXTREE_PYTHON_SELF_CONTAINED": "ON",
        }
        options = [f"-D{name}={value}" for name, value in definitions.items()]
        generator = ["-G", "Ninja"] if shutil.which("ninja") else []
        jobs = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", str(os.cpu_count() or 1))
        build = BUILD / "cmake"
        self.call("cmake", "-S", SOURCE, "-B", build, *generator, *options)
        self.call("cmake", "--build", build, "--parallel", jobs, "--target", "uxtree_python")
        shutil.rmtree(target / "uxtree", ignore_errors=True)  # of an earlier version
        self.call("cmake", "--install", BUILD / "cmake", "--component", "python", "--strip")

    def call(self, *command):
        subprocess.run([str(each) for each in command], check=True)


def version():
    text = (SOURCE / "CMakeLists.txt").read_text(encoding="utf-8")
    return re.search(r"project\(uxtree_Utils VERSION ([\d.]+)", text)[1]


BUILD.mkdir(parents=True, exist_ok=True)
setup(
    version=version(),
    packages=[],
    ext_modules=[Extension("uxtree._core", [])],
    cmdclass={"build_ext": CMakeBuild},
    options={"build": {"build_base": str(BUILD)}, "egg_info": {"egg_base": str(BUILD)}},
)
