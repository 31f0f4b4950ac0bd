"""The .NET binding calls everything what the package calls it, in its own language's case."""

import inspect
import re
from dataclasses import fields, is_dataclass
from enum import IntEnum
from pathlib import Path
from typing import Any

import pytest

import vialto

TOP = Path(__file__).parents[2]
BINDING = re.sub(r"//.*", "", (TOP / "bindings" / "dotnet" / "Vialto.cs").read_text())
TYPES = {
    str(name): str(body)
    for name, body in re.findall(
        r"\n    public (?:static |sealed )?\w+ (\w+)[^\n]*\n    \{(.*?)\n    \}", BINDING, re.S
    )
}
OURS = {name: getattr(vialto, name) for name in vialto.__all__}

# First and last sample are one stretch there. The rest is the package's alone.
STRETCH = {"first", "last", "stretch", "valid"}
OF_PYTHON = {"allow_nonfinite", "lots_in_metres"}


def snake(name: str) -> str:
    return re.sub(r"(?<=[a-z])[A-Z]", r"_\g<0>", name).lower()


@pytest.mark.parametrize(
    "ours", [one for one in OURS.values() if isinstance(one, type) and issubclass(one, IntEnum)]
)
def test_named_values(ours: type[IntEnum]) -> None:
    theirs = re.findall(r"(\w+) = (\d+)", TYPES[ours.__name__])
    assert [(snake(name), int(value)) for name, value in theirs] == [
        (one.name.lower(), one.value) for one in ours
    ]


@pytest.mark.parametrize(
    ("name", "parameters"),
    re.findall(r"public static [\w\[\]]+ (\w+)\(([^)]*)\)", TYPES["Analysis"]),
)
def test_arguments(name: str, parameters: str) -> None:
    theirs = [snake(one) for one in re.findall(r"(\w+)(?: = [\w.]+)?(?:,|$)", parameters)]
    ours = inspect.signature(OURS[snake(name)]).parameters
    assert [one for one in theirs if one not in STRETCH] == [
        one for one in ours if one not in STRETCH | OF_PYTHON
    ]


PAIRS = (vialto.Lot, vialto.Defect)  # their edges and ends are pairs in Python


@pytest.mark.parametrize(
    "ours",
    [one for name, one in OURS.items() if is_dataclass(one) and name in TYPES and one not in PAIRS],
)
def test_fields(ours: Any) -> None:
    theirs = {snake(one) for one in re.findall(r"(\w+) { get;", TYPES[ours.__name__])}
    assert theirs - STRETCH == {one.name for one in fields(ours)} - STRETCH
