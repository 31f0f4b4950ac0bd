"""pandas, which the engineer's layer needs and nothing else does."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

if TYPE_CHECKING:
    import pandas as pd


def pandas() -> Any:
    """The module, or an error that says how to get it."""
    try:
        import pandas as module
    except ModuleNotFoundError as missing:
        raise ModuleNotFoundError(
            "tables of roads need pandas: pip install 'vialto[pandas]'", name=missing.name
        ) from missing
    return module


def table(**columns: Any) -> pd.DataFrame:
    """A table of these columns, with the rows numbered from 0."""
    frame: pd.DataFrame = pandas().DataFrame(columns)
    return frame
