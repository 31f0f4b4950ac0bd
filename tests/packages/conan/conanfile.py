"""Builds the shortest host against the package, as the installation's own test does."""

import os
from pathlib import Path

from conan import ConanFile
from conan.tools.build import can_run
from conan.tools.cmake import CMake, cmake_layout


class VialtoTest(ConanFile):
    settings = "os", "arch", "compiler", "build_type"
    generators = "CMakeDeps", "CMakeToolchain"

    def requirements(self):
        self.requires(self.tested_reference_str)

    def layout(self):
        cmake_layout(self)

    def build(self):
        root = Path(self.recipe_folder).parents[2]
        cmake = CMake(self)
        cmake.configure(
            variables={"HOST_SOURCE": str(root / "examples" / "minimal.c")},
            build_script_folder=str(root / "tests" / "installation" / "consumer"),
        )
        cmake.build()

    def test(self):
        if can_run(self):
            self.run(os.path.join(self.cpp.build.bindir, "consumer"), env="conanrun")
