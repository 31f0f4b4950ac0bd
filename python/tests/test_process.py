"""What a process does around the calls: its library, its directory, its threads."""

import ctypes.util
import os
import subprocess
import sys
from pathlib import Path

import pytest

import vialto
from roads import INTERVAL, WAVE
from vialto import _library

SHOW_TMP = "import os, vialto; vialto.ride_index([0.0] * 999, 0.1); print(os.environ['TMP'])"


def run(program: str, **environment: str) -> str:
    """What a Python of its own prints, with no TMP but what is given."""
    inherited = {name: value for name, value in os.environ.items() if name != "TMP"}
    return subprocess.run(
        [sys.executable, "-c", program],
        env=inherited | environment,
        check=True,
        capture_output=True,
        text=True,
    ).stdout.strip()


def test_diagnostic_files_go_to_a_directory_of_the_process_alone(tmp_path: Path) -> None:
    own = run(SHOW_TMP, TMPDIR=str(tmp_path))
    assert Path(own).parent == tmp_path
    assert list(tmp_path.iterdir()) == []  # removed at exit


def test_given_directory_is_used_and_stays(tmp_path: Path) -> None:
    assert run(SHOW_TMP, TMP=str(tmp_path)) == str(tmp_path)
    assert [path.name for path in tmp_path.iterdir()] == ["ride_dlldrv.txt"]


def test_child_has_a_directory_of_its_own(tmp_path: Path) -> None:
    both = (
        "import os, subprocess, sys\n"
        + SHOW_TMP
        + f"\nsys.stdout.flush(); subprocess.run([sys.executable, '-c', {SHOW_TMP!r}], check=True)"
        + f"\nif os.fork() == 0: exec({SHOW_TMP!r})\nelse: os.wait()"
    )
    directories = run(both, TMPDIR=str(tmp_path)).splitlines()
    assert len(directories) == len(set(directories)) == 3
    assert list(tmp_path.iterdir()) == []


def test_library_that_cannot_be_loaded_says_what_to_set() -> None:
    with pytest.raises(OSError, match="set VIALTO_LIBRARY to its path"):
        vialto.load("/no/such/libvialto.so")
    with pytest.raises(OSError, match="has none of the functions"):
        vialto.load(ctypes.util.find_library("c"))
    vialto.ride_index(WAVE, INTERVAL)  # with the one loaded before


def test_older_library_serves_what_it_has(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setitem(_library._ARGUMENTS, "ride3chan_dlldrv", ())
    monkeypatch.setattr(_library, "_loaded", None)
    vialto.ride_index(WAVE, INTERVAL)
    with pytest.raises(NotImplementedError, match="is older than this package: it lacks ride3chan"):
        _library.call("ride3chan_dlldrv")
