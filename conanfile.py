"""The Conan package: what CMake's install rules install."""

import re
from pathlib import Path

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.build import stdcpp_library
from conan.tools.cmake import CMake, CMakeToolchain, cmake_layout


class VialtoConan(ConanFile):
    name = "vialto"
    description = "Numerical analyses of measured road profiles"
    license = "MIT"
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False]}
    default_options = {"shared": True}
    exports_sources = "CMakeLists.txt", "LICENSE", "bindings/*", "cmake/*", "include/*", "python/CMakeLists.txt", "src/*"
    test_package_folder = "tests/packages/conan"

    def set_version(self):
        header = Path(self.recipe_folder, "include", "vialto", "vialto.h").read_text()
        self.version = ".".join(re.findall(r"#define VIALTO_VERSION_[A-Z]+ (\d+)", header))

    def configure(self):
        # The interface is C, and the library chooses its own dialect.
        self.settings.rm_safe("compiler.cppstd")

    def validate(self):
        if self.settings.compiler == "msvc":
            raise ConanInvalidConfiguration("g++ or clang builds it; MSVC links the DLL of MinGW")

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["VIALTO_BUILD_TESTS"] = False
        toolchain.cache_variables["VIALTO_BUILD_EXAMPLES"] = False
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build(target="vialto")

    def package(self):
        CMake(self).install()

    def package_info(self):
        self.cpp_info.set_property("cmake_file_name", "Vialto")
        self.cpp_info.set_property("cmake_target_name", "Vialto::vialto")
        self.cpp_info.set_property("pkg_config_name", "vialto")
        self.cpp_info.libs = ["vialto"]
        if not self.options.shared:
            self.cpp_info.system_libs = [stdcpp_library(self), "m", "pthread"]
