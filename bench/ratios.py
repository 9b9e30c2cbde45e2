"""Prints our time / peer time for every benchmark "X" that has a "X_Peer"
(arguments after a '/' must match: "BM_A/64" pairs with "BM_A_Peer/64"),
and, for benchmarks whose first argument is the drawing size N, the time at
N = 100000 over the time at N = 10000 ("BM_A/10000/4" with "BM_A/100000/4").
Where the runs were repeated, each time is the median of its repetitions."""
import json
import sys

SMALL, LARGE = "10000", "100000"


def peer_of(name):
    base, sep, args = name.partition("/")
    if not base.endswith("_Peer"):
        return None
    return base[: -len("_Peer")] + sep + args


def larger_of(name):
    """The name at N = 100000 of a benchmark run at N = 10000, or None."""
    parts = name.split("/")
    if len(parts) < 2 or parts[1] != SMALL:
        return None
    return "/".join([parts[0], LARGE] + parts[2:])


def main(path):
    with open(path) as f:
        runs = json.load(f)["benchmarks"]
    # With repetitions, the median of each benchmark's runs; otherwise its one run.
    medians = {r["run_name"]: r["real_time"] for r in runs if r.get("aggregate_name") == "median"}
    times = medians or {r["name"]: r["real_time"] for r in runs if r.get("run_type", "iteration") == "iteration"}
    rows = []
    for name, peer_time in times.items():
        ours = peer_of(name)
        if ours in times and peer_time > 0:
            rows.append((ours, times[ours] / peer_time))
    if rows:
        print("\nratio ours / peer (lower is better):")
        for ours, ratio in sorted(rows):
            print(f"  {ours:<50} {ratio:6.2f}")
    scale = []
    for name, small_time in times.items():
        large = larger_of(name)
        if large in times and small_time > 0:
            scale.append((name.replace("/" + SMALL, "/N", 1), times[large] / small_time))
    if scale:
        print("\nratio time at N = 100000 / time at N = 10000:")
        for name, ratio in sorted(scale):
            print(f"  {name:<50} {ratio:6.2f}")


if __name__ == "__main__":
    main(sys.argv[1])
