"""The wheel: the package as CMake builds it, with the shared library inside.

    /usr/bin/python3 setup.py bdist_wheel
"""

import pathlib
import re
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

source = pathlib.Path(__file__).resolve().parent.parent
version = re.search(r"project\(ZorvanIpp VERSION (\S+)", (source / "CMakeLists.txt").read_text()).group(1)


class BuildByCMake(build_ext):
    def build_extension(self, extension):
        build = pathlib.Path(self.build_temp).resolve()
        if not (build / "CMakeCache.txt").exists():  # an existing build folder keeps its options
            options = ["-DCMAKE_BUILD_TYPE=Release", "-DZORVAN_IPP_TESTS=OFF"]
            options.append(f"-DZORVAN_IPP_PYTHON_EXECUTABLE={sys.executable}")
            subprocess.run(["cmake", "-G", "Ninja", "-S", source, "-B", build, *options], check=True)
        subprocess.run(["cmake", build, "-DZORVAN_IPP_PYTHON=ON"], check=True)
        subprocess.run(["cmake", "--build", build, "--target", "zorvan_ipp_python"], check=True)
        target = pathlib.Path(self.get_ext_fullpath(extension.name)).parent
        target.mkdir(parents=True, exist_ok=True)
        built = build / "python" / "zorvan_ipp"
        for file in (built / pathlib.Path(self.get_ext_filename(extension.name)).name, built / "libzorvan_ipp.so.1"):
            shutil.copy2(file, target)


setup(
    name="zorvan-ipp",
    version=version,
    description="Image operations of Zorvan.Ipp on numpy arrays, in place",
    packages=["zorvan_ipp"],
    package_data={"zorvan_ipp": ["*.pyi", "py.typed"]},
    ext_modules=[Extension("zorvan_ipp._binding", sources=[])],
    cmdclass={"build_ext": BuildByCMake},
    python_requires=">=3.9",
    install_requires=["numpy"],
    zip_safe=False,
)
