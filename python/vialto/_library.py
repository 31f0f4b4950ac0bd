"""The shared library: how it is found, what its functions take, the call."""

from __future__ import annotations

import ctypes
import operator
import os
import sys
from ctypes import POINTER, c_float, c_int32
from pathlib import Path
from typing import Any, SupportsIndex

import numpy as np
from numpy.typing import NDArray

from ._records import (
    Event,
    GrinderSetup,
    GrindSpotRecord,
    JointIDCfg,
    MustGrindCfg,
    PGDefect,
    PGLot,
    ProfAnalysis,
    Profinfo,
    int32,
)
from ._temporary import ensure_directory

SUCCESS = 1
YES, NO = 1, 2


class VialtoError(Exception):
    """An analysis that failed, in the library's own words.

    Attributes
    ----------
    description : str
        What went wrong.
    routine : str
        Where: the innermost routine first, its callers behind slashes.
    error_code : int
        100 the request cannot be served, 101 a selector out of range, a numerical failure or a
        limit, 102 a file could not be opened.
    error_type : int
        1 fatal, 2 recoverable with some failure, 3 recoverable.
    """

    def __init__(self, description: str, routine: str, error_code: int, error_type: int) -> None:
        super().__init__(description, routine, error_code, error_type)
        self.description = description
        self.routine = routine
        self.error_code = error_code
        self.error_type = error_type

    def __str__(self) -> str:
        return f"{self.description} ({self.routine}, code {self.error_code})"


class _Integer:
    """A whole number by value; what int32 cannot hold is refused."""

    @classmethod
    def from_param(cls, value: SupportsIndex) -> c_int32:
        return c_int32(int32(operator.index(value)))


def _array(dtype: Any) -> Any:
    """A contiguous one-dimensional array of exactly this type, by address."""
    return np.ctypeslib.ndpointer(dtype, ndim=1, flags="C_CONTIGUOUS")


class _IntegersOrNull:
    """An array of int32 by address, or a null pointer for None."""

    _present = _array(np.int32)

    @classmethod
    def from_param(cls, value: NDArray[np.int32] | None) -> Any:
        return None if value is None else cls._present.from_param(value)


_integer = _Integer
_real = c_float
_reals = _array(np.float32)
_doubles = _array(np.float64)
_integers = _array(np.int32)
_integers_or_null = _IntegersOrNull
_integer_out = POINTER(c_int32)
_real_out = POINTER(c_float)
_event = POINTER(Event)

# The arguments of each function, ahead of the event that all of them end with.
# ctypes hands over the address of what is given for a POINTER.
_ARGUMENTS: dict[str, tuple[Any, ...]] = {
    "ride_dlldrv": (
        _integer,
        _integer,
        _integer,
        _integer,
        _reals,
        _integers_or_null,
        _real,
        _real_out,
    ),
    "rideseg_dlldrv": (
        _integer,
        _integer,
        _integer,
        _reals,
        _real,
        _integer,
        _integers,
        _reals,
        _reals,
    ),
    "ridecon_dlldrv": (_integer, _real, _real, _integer, _integer, _reals, _reals),
    "ride2chan_dlldrv": (
        _integer,
        _integer,
        _integer,
        _integer,
        _reals,
        _reals,
        _integers_or_null,
        _real,
        _real_out,
    ),
    "rideseg2chan_dlldrv": (
        _integer,
        _integer,
        _integer,
        _reals,
        _reals,
        _real,
        _integer,
        _integers,
        _reals,
        _reals,
    ),
    "ridecon2chan_dlldrv": (_integer, _integer, _integer, _reals, _reals, _real, _real, _reals),
    "wimindex_dlldrv": (_integer, _real, _real, _integer, _reals, _reals),
    "psd_dll": (
        _integer,
        _integer,
        _integer,
        _integer,
        _integer,
        _real,
        _integer,
        _real,
        _reals,
        _reals,
        _reals,
        _integer_out,
        _integer_out,
    ),
    "rse_dlldrv": (_integer, _real, _real, _reals, _reals, _real_out, _integer_out, _integer_out),
    "pgfilt_dll": (
        _integer,
        _integer,
        _real,
        _integer,
        _integer,
        _reals,
        _reals,
        _reals,
        _integer_out,
        _integer_out,
    ),
    "pgindex_dll": (
        _integer,
        _integer,
        _real,
        _reals,
        _integer,
        _reals,
        _integer,
        POINTER(PGLot),
        _integer_out,
        POINTER(PGDefect),
        _integer_out,
        POINTER(PGDefect),
    ),
    "grindsimu_dlldrv": (
        _real,
        _integer,
        _integer,
        POINTER(GrinderSetup),
        POINTER(GrindSpotRecord),
        _reals,
        _integers,
    ),
    "grindsimu_2chan_dlldrv": (
        _real,
        _integer,
        _integer,
        POINTER(GrinderSetup),
        POINTER(GrindSpotRecord),
        _reals,
        _reals,
        _integers,
    ),
    "mustgrind_dlldrv": (
        _integer,
        _real,
        POINTER(MustGrindCfg),
        POINTER(GrinderSetup),
        _reals,
        _integers,
    ),
    "mustgrind_2chan_dlldrv": (
        _integer,
        _real,
        POINTER(MustGrindCfg),
        POINTER(GrinderSetup),
        _reals,
        _reals,
        _integers,
    ),
    "CC_CoeffArray": (_integer_out, POINTER(ProfAnalysis), POINTER(Profinfo)),
    "ccfunc": (
        _integer,
        _integer,
        _integer,
        _reals,
        _reals,
        POINTER(ProfAnalysis),
        POINTER(Profinfo),
        _reals,
        _reals,
        _reals,
        _reals,
    ),
    "pcbia_dlldrv": (_reals, _reals, _real_out, _real_out, _integer_out, _integer_out),
    "joint_id_dlldrv": (
        POINTER(JointIDCfg),
        _real,
        _integer,
        _reals,
        _reals,
        _integers,
        _integers,
        _doubles,
        _doubles,
    ),
    "joint_fault_dlldrv": (_integer, _integer, _real, _real, _reals, _doubles, _reals),
    "antismth_dlldrv": (_real, _real, _integer, _reals, _integer_out, _integer_out),
    "histgrm_dlldrv": (
        _integer,
        _integer,
        _integer,
        _real,
        _real,
        _real,
        _real,
        _reals,
        _integers_or_null,
        _reals,
        _real_out,
    ),
}

_loaded: _Library | None = None


def _file_name() -> str:
    """What the library is called beside this module, in a package that was installed."""
    if sys.platform == "win32":
        return "vialto.dll"
    return "libvialto.dylib" if sys.platform == "darwin" else "libvialto.so"


def _loader_name() -> str:
    """What the library is called where the platform has it."""
    return _file_name() + (".1" if sys.platform not in ("win32", "darwin") else "")


def _default_path() -> str:
    """The library that VIALTO_LIBRARY names, the package's own, or the platform's."""
    named = os.environ.get("VIALTO_LIBRARY")
    if named:
        return named
    import vialto  # an installation for development has its files in two places

    own = (Path(place) / _file_name() for place in vialto.__path__)
    return next((str(path) for path in own if path.is_file()), _loader_name())


def _open(path: str) -> ctypes.CDLL:
    try:
        if sys.platform == "win32":
            return ctypes.WinDLL(path)  # stdcall on 32-bit Windows
        return ctypes.CDLL(path)
    except OSError as problem:
        raise OSError(
            f"the library cannot be loaded: {problem}; set VIALTO_LIBRARY to its path, or install"
            " the package, which holds it, with pip"
        ) from problem


class _Library:
    """A loaded library: its functions, and the names of those that it lacks."""

    def __init__(self, path: str) -> None:
        self.path = path
        self.functions: dict[str, Any] = {}
        opened = _open(path)
        for name, arguments in _ARGUMENTS.items():
            function = getattr(opened, name, None)
            if function is not None:
                function.argtypes = (*arguments, _event)
                function.restype = c_int32
                self.functions[name] = function
        if not self.functions:
            raise OSError(f"{path} has none of the functions of the library")


def load(path: os.PathLike[str] | str | None = None) -> None:
    """Load the library, in place of the one loaded before if there is one.

    The first analysis calls this itself. A library that is older than the package serves what it
    has; an analysis that it lacks raises `NotImplementedError`.

    Parameters
    ----------
    path : path, optional
        By default the library that the environment variable ``VIALTO_LIBRARY`` names, the one
        installed with the package, or the one that the platform's loader finds.

    Raises
    ------
    OSError
        There is no such library, or it is none of this kind.
    """
    global _loaded
    library = _Library(os.fspath(path) if path is not None else _default_path())
    _loaded = library


def _text(padded: bytes) -> str:
    return padded.decode("ascii", "replace").rstrip()


def call(name: str, *arguments: Any) -> None:
    """Call a function of the library; raises VialtoError when it fails."""
    ensure_directory()
    event = Event()
    if _loaded is None:
        load()
    library = _loaded
    assert library is not None
    function = library.functions.get(name)
    if function is None:
        raise NotImplementedError(f"{library.path} is older than this package: it lacks {name}")
    if function(*arguments, event) != SUCCESS:
        raise VialtoError(
            _text(event.description), _text(event.routine), event.error_code, event.error_type
        )


def yes_or_no(switch: bool) -> int:
    """The number of a switch."""
    return YES if switch else NO
