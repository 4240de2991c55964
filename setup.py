"""Builds the Python module ehal with CMake.

setuptools drives the build; CMake compiles the library (static, so that the module needs no
libehal.so beside it) and the module with its generated stubs. The wheel carries the module,
ehal.pyi and the py.typed marker. The version is read from project(ehal VERSION ...) in
CMakeLists.txt, the project's one version number.

EHAL_CMAKE_BUILD_DIR names the CMake build folder (kept between builds, so a second build only
recompiles what changed); CMAKE_BUILD_PARALLEL_LEVEL the number of compile jobs.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).resolve().parent


def project_version():
    text = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    match = re.search(r"project\(\s*ehal\s+VERSION\s+([0-9][0-9.]*)", text)
    if not match:
        raise RuntimeError("no project(ehal VERSION ...) in CMakeLists.txt")
    return match.group(1)


class CMakeExtension(Extension):
    """The module, built by the CMake target ehal_python rather than from listed sources."""

    def __init__(self, name):
        super().__init__(name, sources=[])


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        target = pathlib.Path(self.get_ext_fullpath(ext.name)).resolve()
        build = pathlib.Path(
            os.environ.get("EHAL_CMAKE_BUILD_DIR") or pathlib.Path(self.build_temp).resolve() / "cmake"
        ).resolve()
        configure = [
            "cmake", "-S", str(ROOT), "-B", str(build),
            "-DCMAKE_BUILD_TYPE=Release",
            "-DBUILD_SHARED_LIBS=OFF",
            "-DEHAL_BUILD_TESTS=OFF",
            "-DEHAL_BUILD_BENCH=OFF",
            "-DEHAL_BUILD_EXAMPLES=OFF",
            "-DEHAL_BUILD_PYTHON=ON",
            f"-DPython3_EXECUTABLE={sys.executable}",
        ]
        # A fresh build folder uses Ninja where it is installed; an existing one keeps its generator.
        if not (build / "CMakeCache.txt").exists() and shutil.which("ninja"):
            configure += ["-G", "Ninja"]
        subprocess.run(configure, check=True)
        subprocess.run(
            ["cmake", "--build", str(build), "--target", "ehal_python", "ehal_python_stub_file"],
            check=True,
        )
        suffix = ".so" if os.name == "posix" else ".pyd"
        modules = sorted((build / "python").glob("ehal*" + suffix))
        if not modules:
            raise RuntimeError(f"CMake built no module into {build / 'python'}")
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(modules[0], target)
        # Beside the module, as in an installed prefix: the stubs and the marker that the module
        # carries its own types.
        shutil.copyfile(build / "python" / "ehal.pyi", target.parent / "ehal.pyi")
        shutil.copyfile(ROOT / "python" / "py.typed", target.parent / "py.typed")


# setuptools' own folders go under build/pip, beside the CMake presets' build folders.
BUILD_BASE = "build/pip"
os.makedirs(ROOT / BUILD_BASE, exist_ok=True)

setup(
    version=project_version(),
    # The only content is the compiled module, its stubs and marker: no Python packages.
    packages=[],
    py_modules=[],
    ext_modules=[CMakeExtension("ehal")],
    cmdclass={"build_ext": CMakeBuild},
    options={"build": {"build_base": BUILD_BASE}, "egg_info": {"egg_base": BUILD_BASE}},
    zip_safe=False,
)
