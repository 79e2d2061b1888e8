#!/usr/bin/env python3
"""Runs kirrel_run_bench's scaling benchmarks (a wipe and Toonify against frame count and frame size),
prints the figures as Markdown tables and plots the time per pixel as docs/scaling.png.

Usage: bench/scaling [--quick]   (the wrapper installs gnuplot and builds first)
Every figure is the best of three repetitions (two with --quick): on a shared machine the slow runs
are the ones something else disturbed.
"""
import json
import os
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BUILD = os.environ.get("KIRREL_BUILD_DIR", os.path.join(ROOT, "build"))
QUICK = "--quick" in sys.argv
PLOT = os.path.join(ROOT, "docs", "scaling.png")
RUNS = [("BM_WipeScaling", "wipe to left"), ("BM_ToonScaling", "Toonify, strength 5")]


def measure():
    args = [os.path.join(BUILD, "bench", "kirrel_run_bench"), "--benchmark_filter=Scaling",
            "--benchmark_format=json", f"--benchmark_repetitions={2 if QUICK else 3}"]
    if QUICK:
        args.append("--benchmark_min_time=0.05")
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen")
    out = subprocess.run(args, check=True, capture_output=True, text=True, env=env).stdout
    best = {}
    for b in json.loads(out)["benchmarks"]:
        if b.get("run_type", "iteration") != "iteration":
            continue
        name, frames, w, h = b["run_name"].split("/")[:4]
        key = (name, int(frames.split(":")[1]), int(w.split(":")[1]), int(h.split(":")[1]))
        scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}[b["time_unit"]]
        row = {"ms": b["real_time"] * scale, "faults": b.get("faults_per_frame", 0.0)}
        if key not in best or row["ms"] < best[key]["ms"]:
            best[key] = row
    return best


def ns_per_pixel(key, row):
    _, frames, w, h = key
    return row["ms"] * 1e6 / (frames * w * h)


def tables(best):
    print("Against the number of frames, 640x480 (ms per run; ns per pixel; page faults per frame)\n")
    print("| Frames | " + " | ".join(f"{label} ms | ns/px | faults/frame" for _, label in RUNS) + " |")
    print("|---" * (1 + 3 * len(RUNS)) + "|")
    for frames in sorted({k[1] for k in best if (k[2], k[3]) == (640, 480)}):
        cells = []
        for name, _ in RUNS:
            key = (name, frames, 640, 480)
            row = best[key]
            cells += [f"{row['ms']:.1f}", f"{ns_per_pixel(key, row):.2f}", f"{row['faults']:.0f}"]
        print(f"| {frames} | " + " | ".join(cells) + " |")
    print("\nAgainst the frame size, 30 frames\n")
    print("| Size | " + " | ".join(f"{label} ms | ns/px | faults/frame" for _, label in RUNS) + " |")
    print("|---" * (1 + 3 * len(RUNS)) + "|")
    for w, h in sorted({(k[2], k[3]) for k in best if k[1] == 30}):
        cells = []
        for name, _ in RUNS:
            key = (name, 30, w, h)
            row = best[key]
            cells += [f"{row['ms']:.1f}", f"{ns_per_pixel(key, row):.2f}", f"{row['faults']:.0f}"]
        print(f"| {w}x{h} | " + " | ".join(cells) + " |")


def plot(best):
    with tempfile.TemporaryDirectory() as tmp:
        frames_dat = os.path.join(tmp, "frames.dat")
        size_dat = os.path.join(tmp, "size.dat")
        with open(frames_dat, "w") as f:
            for frames in sorted({k[1] for k in best if (k[2], k[3]) == (640, 480)}):
                keys = [(name, frames, 640, 480) for name, _ in RUNS]
                f.write(f"{frames} " + " ".join(f"{ns_per_pixel(k, best[k]):.4f}" for k in keys) + "\n")
        with open(size_dat, "w") as f:
            for w, h in sorted({(k[2], k[3]) for k in best if k[1] == 30}, key=lambda s: s[0] * s[1]):
                keys = [(name, 30, w, h) for name, _ in RUNS]
                # The size's place on the axis is its rank; its name labels it.
                f.write(f"{w * h} {w}x{h} " +
                        " ".join(f"{ns_per_pixel(k, best[k]):.4f}" for k in keys) + "\n")
        script = f"""
set terminal pngcairo size 1200,480 font ",11"
set output "{PLOT}"
set multiplot layout 1,2 title "Time per pixel of a whole run (lower is better; flat = linear growth)"
set grid
set key top left
set logscale x
set ylabel "ns per pixel"
set yrange [0:*]
set xlabel "frames (640x480)"
plot "{frames_dat}" using 1:2 with linespoints lw 2 title "{RUNS[0][1]}", \\
     "{frames_dat}" using 1:3 with linespoints lw 2 title "{RUNS[1][1]}"
unset logscale x
set xlabel "frame size (30 frames)"
set xtics rotate by -30
plot "{size_dat}" using 0:3:xticlabels(2) with linespoints lw 2 title "{RUNS[0][1]}", \\
     "{size_dat}" using 0:4 with linespoints lw 2 title "{RUNS[1][1]}"
unset multiplot
"""
        subprocess.run(["gnuplot"], input=script, text=True, check=True)
    print(f"\nPlot: {os.path.relpath(PLOT, ROOT)}")


def main():
    best = measure()
    tables(best)
    plot(best)


if __name__ == "__main__":
    main()
