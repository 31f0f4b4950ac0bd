"""Runs the benchmarks of all exports and prints one table, a row a function.

    bench_table.py PROGRAM [OTHER_PROGRAM]

The program runs in several rounds, and each figure is the least of all rounds: what disturbs a
measurement makes it longer. A function of two tracks is set beside that of one. With the program
of another build, both run in turn in each round, and the last column says how many times as fast as
the other build this one is.
"""

import json
import subprocess
import sys

ROUNDS = 15
SECONDS_OF_EACH = 0.03
NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6}


def run(program):
    """Time [ns] and samples per second of each benchmark."""
    report = subprocess.run(
        [program, "--benchmark_format=json", f"--benchmark_min_time={SECONDS_OF_EACH}"],
        check=True,
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
    )
    return {
        result["name"]: (
            result["cpu_time"] * NANOSECONDS[result["time_unit"]],
            result["items_per_second"],
        )
        for result in json.loads(report.stdout)["benchmarks"]
        if "error_occurred" not in result
    }


def least(rounds):
    """The round with the least time of each benchmark."""
    names = rounds[0].keys()
    return {name: min(results[name] for results in rounds) for name in names}


def one_track(name):
    return name.replace("_2chan", "").replace("2chan", "")


def ratio(slow, fast):
    return f"{slow[0] / fast[0]:.2f}" if slow and fast else ""


def main():
    programs = sys.argv[1:]
    rounds = [[run(program) for program in programs] for _ in range(ROUNDS)]
    ours, *others = (least(of_program) for of_program in zip(*rounds, strict=True))

    heading = ["function", "ms", "million samples/s", "times the literal version"]
    heading.append("two tracks to one")
    print(" | ".join(["", *heading, *(["times the other build"] if others else []), ""]).strip())
    print("|---" + "|---:" * (len(heading) - 1 + len(others)) + "|")
    for name, result in ours.items():
        if name.endswith("/literal"):
            continue
        time, rate = result
        row = [f"`{name}`", f"{time / 1e6:.3f}", f"{rate / 1e6:.1f}"]
        row.append(ratio(ours.get(name + "/literal"), result))
        row.append(ratio(result, ours.get(one_track(name))) if "2chan" in name else "")
        row += [ratio(other.get(name), result) for other in others]
        print("| " + " | ".join(row) + " |")


if __name__ == "__main__":
    main()
