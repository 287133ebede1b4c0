"""Builds the extension pimtlv._core with the repository's CMake project.

Only the extension's target is built (no tests, benchmarks or tool), in
build/python (PIMTLV_PYTHON_BUILD_DIR to change it), which stays between
installs so that a rebuild compiles only what changed; ccache is used where
the machine has it. The extension and the project's shared libraries it
loads are put side by side in the package.
"""

import os
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent


class CMakeBuild(build_ext):
    def build_extension(self, ext: Extension) -> None:
        build = Path(os.environ.get("PIMTLV_PYTHON_BUILD_DIR", ROOT / "build" / "python"))
        out = Path(self.get_ext_fullpath(ext.name)).resolve().parent
        out.mkdir(parents=True, exist_ok=True)
        subprocess.run(
            ["cmake", "-S", str(ROOT), "-B", str(build), "-G", "Ninja",
             "-DCMAKE_BUILD_TYPE=Release", "-DPIMTLV_BUILD_TESTS=OFF",
             "-DPIMTLV_BUILD_PYTHON=ON", f"-DPython_EXECUTABLE={sys.executable}",
             f"-DPIMTLV_PYTHON_OUTPUT_DIR={out}"],
            check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["cmake", "--build", str(build), "--target", "pimtlv_python_core"],
                       check=True)


setup(ext_modules=[Extension("pimtlv._core", sources=[])], cmdclass={"build_ext": CMakeBuild})
