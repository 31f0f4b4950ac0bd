"""Proves on the file what cannot be run: the DLL keeps to vialto.h.

    check_dll.py OBJDUMP VIALTO.DLL

It exports the functions of the header, undecorated, and nothing else. It imports from KERNEL32 and
the C runtime alone. And on 32 bits, where a function of stdcall takes its own arguments off the
stack, each pops the bytes that its prototype asks for.
"""

from __future__ import annotations

import re
import subprocess
import sys
from bisect import bisect_left
from pathlib import Path

HEADER = Path(__file__).parents[2] / "include" / "vialto" / "vialto.h"
IMPORTED = {"KERNEL32.dll", "msvcrt.dll"}


def argument_bytes() -> dict[str, int]:
    """The bytes of stack that each function of the header takes on 32 bits."""
    header = re.sub(r"/\*.*?\*/", "", HEADER.read_text(), flags=re.DOTALL)
    prototypes = re.findall(r"VIALTO_CALL\s+(\w+)\(([^)]*)\)", header)
    return {
        name: sum(
            8 if re.match(r"\s*double\s+\w", argument) else 4 for argument in arguments.split(",")
        )
        for name, arguments in prototypes
    }


def popped_bytes(disassembly: str, entries: dict[str, int]) -> dict[str, int]:
    """What the first return behind the entry of each function pops."""
    returns = [
        (int(address, 16), int(count or "0", 16))
        for address, count in re.findall(
            r"\n *([0-9a-f]+):\t[^\t\n]+\tret *(?:\$0x([0-9a-f]+))?", disassembly
        )
    ]
    addresses = [address for address, _ in returns]
    return {name: returns[bisect_left(addresses, entry)][1] for name, entry in entries.items()}


def faults(objdump: str, dll: str) -> list[str]:
    """What is wrong with the DLL, a line each."""

    def read(option: str) -> str:
        return subprocess.run(
            [objdump, option, dll], check=True, capture_output=True, text=True
        ).stdout

    headers = read("-p")
    addresses = re.findall(r"\+base\[ *\d+\] ([0-9a-f]+) Export RVA", headers)
    exported = {
        name: int(addresses[int(place)], 16)
        for place, name in re.findall(r"\n\t\[ *(\d+)\] (\w+)(?=\n)", headers)
    }
    expected = argument_bytes()
    found = [f"{name} is exported and not declared" for name in exported.keys() - expected]
    found += [f"{name} is declared and not exported" for name in expected.keys() - exported]
    found += [
        f"{library} is imported"
        for library in set(re.findall(r"DLL Name: (\S+)", headers)) - IMPORTED
    ]
    if "file format pei-i386" in headers:
        base = int(re.findall(r"ImageBase\s+([0-9a-f]+)", headers)[0], 16)
        entries = {name: base + exported[name] for name in exported.keys() & expected}
        found += [
            f"{name} pops {count} bytes instead of {expected[name]}"
            for name, count in popped_bytes(read("-d"), entries).items()
            if count != expected[name]
        ]
    return found


def main(arguments: list[str]) -> int:
    """Prints what is wrong, or how much is right."""
    found = faults(*arguments)
    print("\n".join(found) or f"{arguments[1]} keeps to vialto.h")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
