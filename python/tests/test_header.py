"""Functions, their arguments, records and named values are those of the header."""

import ctypes
import re
from pathlib import Path
from typing import Any

import pytest

from vialto import (
    DefectKind,
    Density,
    Direction,
    Feature,
    FilterBand,
    FilterKind,
    FilterOutput,
    FrequencyGrid,
    GrindFlag,
    JointMethod,
    RideIndex,
    _library,
    _records,
    comparison,
    profile_indices,
)

HEADER = Path(__file__).parents[2] / "include" / "vialto" / "vialto.h"

header = re.sub(r"/\*.*?\*/", "", HEADER.read_text(), flags=re.DOTALL)


def test_functions_of_the_header() -> None:
    prototypes = re.findall(r"VIALTO_CALL\s+(\w+)\(([^)]*)\)", header)
    assert {name for name, _ in prototypes} == set(_library._ARGUMENTS)
    for name, parameters in prototypes:
        types = [
            re.sub(r"\bconst\b|\w+\s*$", "", parameter).split()
            for parameter in parameters.split(",")
        ]
        assert types.pop() == ["tEvent*"]
        assert [c_type for [c_type] in types] == [
            c_type_of(argument) for argument in _library._ARGUMENTS[name]
        ]


def test_records_of_the_header() -> None:
    records = {
        f"t{record.__name__.removesuffix('Record')}": record
        for record in _records.Record.__subclasses__()
    }
    declared = re.findall(r"typedef struct \w+ \{(.*?)\} (\w+);", header, re.DOTALL)
    assert {name for _, name in declared} == set(records)
    plain: dict[str, Any] = {
        "char": ctypes.c_char,
        "int32_t": ctypes.c_int32,
        "float": ctypes.c_float,
        **records,
    }
    for body, name in declared:
        fields = [
            (field, plain[kind] * int(count) if count else plain[kind])
            for kind, field, count in re.findall(r"(\w+)\s+(\w+)(?:\[(\d+)\])?;", body)
        ]
        assert fields == records[name]._fields_


# The enumerators of the header in their order, by their prefix.
NAMED: dict[str, list[int]] = {
    "idx_ridests_": [*RideIndex],
    "idx_filttyp_": [*FilterKind],
    "idx_subfilttyp_": [*FilterBand],
    "idx_filtouttyp_": [*FilterOutput],
    "idx_psdtyp_": [*Density],
    "idx_psdband_": [*FrequencyGrid],
    "idx_pgdefect_": [*DefectKind],
    "idx_grinddir_": [*Direction],
    "idx_grindflag_": [*GrindFlag],
    "idx_jnttyp_": [*Feature],
    "idx_jntid_": [*JointMethod],
    "vialto_yes": [_library.YES],
    "vialto_no": [_library.NO],
    "vialto_success": [_library.SUCCESS],
    "vialto_mxPasses": [_records.MOST_PASSES],
    "vialto_i_PG_maxdefects": [profile_indices.MOST_DEFECTS],
    "vialto_repeatability_": [comparison.RUNS, comparison.POINTS],
    "idx_pgset_count": [len(profile_indices.SETTINGS)],
}


@pytest.mark.parametrize("prefix", NAMED)
def test_named_values_of_the_header(prefix: str) -> None:
    values = re.findall(rf"\b{prefix}\w*\s*=\s*(\d+)", header)
    assert [int(value) for value in values] == NAMED[prefix]


def test_settings_of_a_profile_index_stand_in_their_order() -> None:
    places = re.findall(r"idx_pgset_(\w+) = \d", header)
    assert places == [*profile_indices.SETTINGS, "count"]


def c_type_of(argument: type) -> str:
    plain = {
        _library._integer: "int32_t",
        _library._real: "float",
        _library._reals: "float*",
        _library._doubles: "double*",
        _library._integers: "int32_t*",
        _library._integers_or_null: "int32_t*",
        _library._real_out: "float*",
        _library._integer_out: "int32_t*",
    }
    if argument in plain:
        return plain[argument]
    record = argument._type_.__name__.removesuffix("Record")  # type: ignore
    return f"t{record}*"
