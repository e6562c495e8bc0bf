"""The recipe of the sources that it lies in: conan create packaging/conan"""

import os

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeToolchain, cmake_layout
from conan.tools.files import copy


class ZorvanIpp(ConanFile):
    name = "zorvan-ipp"
    version = "1.0.0"
    description = "Image-processing operations for 64-bit x86 processors"
    license = None  # not chosen yet
    package_type = "shared-library"
    settings = "os", "arch", "compiler", "build_type"

    def export_sources(self):
        sources = os.path.join(self.recipe_folder, "..", "..")
        for pattern in ("CMakeLists.txt", "CHANGELOG.md", "LICENCE", "cmake/*", "docs/*", "examples/common/*", "packaging/*",
                        "zorvan/*"):
            copy(self, pattern, src=sources, dst=self.export_sources_folder)

    def layout(self):
        cmake_layout(self)

    def validate(self):
        if self.settings.os != "Linux" or self.settings.arch != "x86_64":
            raise ConanInvalidConfiguration("The library is for Linux on 64-bit x86.")
        check_min_cppstd(self, 17)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["ZORVAN_IPP_TESTS"] = False
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()
        copy(self, "LICENCE", src=self.source_folder, dst=os.path.join(self.package_folder, "licenses"))

    def package_info(self):
        self.cpp_info.libs = ["zorvan_ipp"]
        self.cpp_info.set_property("cmake_file_name", "ZorvanIpp")
        self.cpp_info.set_property("cmake_target_name", "Zorvan::Ipp")
        self.cpp_info.set_property("pkg_config_name", "zorvan-ipp")
