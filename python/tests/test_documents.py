"""What is printed in the documents works as printed."""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

import nbformat
import pytest
from nbclient import NotebookClient

import vialto
from roads import INTERVAL, SLABS, rough_road
from vialto import _library

TOP = Path(__file__).parents[2]


def programs(document: str) -> list[str]:
    return re.findall(r"^```python\n(.*?)^```", (TOP / document).read_text(), re.DOTALL | re.M)


def run(program: str, directory: Path, **environment: str) -> str:
    return subprocess.run(
        [sys.executable, "-W", "error", "-c", program],
        cwd=directory,
        env=os.environ | environment,
        check=True,
        capture_output=True,
        text=True,
    ).stdout


def test_shortest_hosts(tmp_path: Path) -> None:
    with_package, with_ctypes = programs("README.md")
    shutil.copy(_library._default_path(), tmp_path / "libvialto.so.1")
    expected = run(with_package, tmp_path)
    assert re.fullmatch(r"IRI \d\.\d\d m/km\n", expected)
    assert run(with_ctypes, tmp_path, LD_LIBRARY_PATH=str(tmp_path)) == expected


def test_programs_of_the_package(tmp_path: Path) -> None:
    first, *others = programs("python/README.md")
    assert run(first, tmp_path).startswith("IRI ")
    tracks = {"left": SLABS + rough_road(1), "right": SLABS + rough_road(2)}
    road = vialto.Road("road", INTERVAL, tracks)
    rows = zip(road.distance, *tracks.values(), strict=True)
    lines = "".join(f"{x:.3f},{left:.6f},{right:.6f}\n" for x, left, right in rows)
    (tmp_path / "road.csv").write_text("distance,left,right\n" + lines)
    assert "ride_number" in run("import vialto\n" + "".join(others), tmp_path)


@pytest.mark.filterwarnings("ignore")  # of the notebook's own packages
def test_notebook(tmp_path: Path) -> None:
    text = (TOP / "examples" / "road.ipynb").read_text()
    notebook = nbformat.reads(text, as_version=4)  # type: ignore[no-untyped-call]
    assert not any(cell.get("outputs") for cell in notebook.cells)
    NotebookClient(notebook, resources={"metadata": {"path": str(tmp_path)}}).execute()
    texts = [out.get("text", "") for cell in notebook.cells for out in cell.get("outputs", [])]
    assert re.search(r"at an offset of 1\.000 m", "".join(texts))
