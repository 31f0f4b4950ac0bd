"""What all tests share."""

from pathlib import Path

import pytest
from hypothesis import settings

# Machines that test are shared: what takes long there is no fault.
settings.register_profile("vialto", deadline=None)
settings.load_profile("vialto")


@pytest.fixture(autouse=True)
def temporary_directory(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    """Diagnostic files go where the test alone writes."""
    monkeypatch.setenv("TMP", str(tmp_path))
