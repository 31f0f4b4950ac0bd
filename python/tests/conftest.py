"""What all tests share."""

from pathlib import Path

import pytest


@pytest.fixture(autouse=True)
def temporary_directory(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    """Diagnostic files go where the test alone writes."""
    monkeypatch.setenv("TMP", str(tmp_path))
