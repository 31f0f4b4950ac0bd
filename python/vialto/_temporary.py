"""Where the library writes its diagnostic files: a directory of the process alone."""

from __future__ import annotations

import atexit
import os
import re
import shutil
import sys
import tempfile
import threading

# What a directory of this package is called. A process that finds its parent's in TMP takes
# one of its own: the parent may end first, and two processes would share files.
_OWN = re.compile(r"vialto-(\d+)-\w+")

_served = 0  # the process that has been looked after
_lock = threading.Lock()


def ensure_directory() -> None:
    """Give the process a TMP of its own, which is removed at exit, where none is set."""
    global _served
    if _served == os.getpid():
        return
    with _lock:
        if _served != os.getpid():
            _set_directory()
            _served = os.getpid()


def _set_directory() -> None:
    given = os.environ.get("TMP", "").strip()
    owner = _OWN.fullmatch(os.path.basename(given))
    if given and (owner is None or int(owner[1]) == os.getpid()):
        return
    # TMP is one of the places where tempfile looks for a directory, once: let it do so before.
    parent = os.path.dirname(given) if owner else tempfile.gettempdir()
    directory = tempfile.mkdtemp(prefix=f"vialto-{os.getpid()}-", dir=parent)
    os.environ["TMP"] = directory
    atexit.register(_remove, directory, os.getpid())
    if "multiprocessing.util" in sys.modules:  # whose processes end without atexit
        sys.modules["multiprocessing.util"].Finalize(
            None, _remove, args=(directory, os.getpid()), exitpriority=0
        )


def _remove(directory: str, owner: int) -> None:
    """Remove the directory, unless this is a fork of the process that made it."""
    if os.getpid() == owner:
        shutil.rmtree(directory, ignore_errors=True)


def _renew_lock() -> None:
    global _lock
    _lock = threading.Lock()  # which another thread may have held when the process forked


if hasattr(os, "register_at_fork"):
    os.register_at_fork(after_in_child=_renew_lock)
