"""`vialto` and `python -m vialto`: the command line."""

import sys


def main() -> None:
    """Run a command, or say which package it needs."""
    try:
        from .cli import app

        app(prog_name="vialto")
    except ModuleNotFoundError as missing:
        sys.exit(f"vialto: {missing}; pip install 'vialto[all]' has all that the commands need")


if __name__ == "__main__":
    main()
