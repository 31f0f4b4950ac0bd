"""Makes a table of the JSON that the benchmarks of all exports print, medians of repetitions."""

import json
import sys

NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6}


def medians(report):
    """Time [ns] and samples per second of each benchmark."""
    return {
        run["run_name"]: (run["cpu_time"] * NANOSECONDS[run["time_unit"]], run["items_per_second"])
        for run in report["benchmarks"]
        if run["aggregate_name"] == "median"
    }


def main():
    results = medians(json.load(sys.stdin))
    print("| function | ms | million samples/s | times the literal version |")
    print("|---|---:|---:|---:|")
    for name, (time, rate) in results.items():
        if name.endswith("/literal"):
            continue
        literal = results.get(name + "/literal")
        ratio = f"{literal[0] / time:.1f}" if literal else ""
        print(f"| `{name}` | {time / 1e6:.3f} | {rate / 1e6:.1f} | {ratio} |")


if __name__ == "__main__":
    main()
