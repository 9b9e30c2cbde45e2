"""Prints our time / peer time for every benchmark "X" that has a "X_Peer"
(arguments after a '/' must match: "BM_A/64" pairs with "BM_A_Peer/64")."""
import json
import sys


def peer_of(name):
    base, sep, args = name.partition("/")
    if not base.endswith("_Peer"):
        return None
    return base[: -len("_Peer")] + sep + args


def main(path):
    with open(path) as f:
        runs = json.load(f)["benchmarks"]
    times = {r["name"]: r["real_time"] for r in runs if r.get("run_type", "iteration") == "iteration"}
    rows = []
    for name, peer_time in times.items():
        ours = peer_of(name)
        if ours in times and peer_time > 0:
            rows.append((ours, times[ours] / peer_time))
    if rows:
        print("\nratio ours / peer (lower is better):")
        for ours, ratio in sorted(rows):
            print(f"  {ours:<50} {ratio:6.2f}")


if __name__ == "__main__":
    main(sys.argv[1])
