#!/usr/bin/env python3
"""Times Kirrel's runs and pixel operations against a reference video filter's cross-fades and a
reference toolkit's box blur on this machine, in one go, and prints the ratios.

Usage: bench/compare [--quick]   (the wrapper installs what is missing and builds first)

Figures:
  - whole 60-frame transitions at 640x480 and 1920x1080: ours through the in-memory host, theirs as
    the filter's own time (a run with the transition minus a run that only reads the same inputs),
    single thread against single thread, and theirs with default threads for reference;
  - the 5x5 box blur on three planes, single thread on both sides;
  - every pixel operation's time against a plain copy of the three planes it writes (the bound).
"""
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BUILD = os.environ.get("KIRREL_BUILD_DIR", os.path.join(ROOT, "build"))
QUICK = "--quick" in sys.argv
FRAMES = 60
SIZES = [(640, 480), (1920, 1080)]
REPEAT = 2 if QUICK else 3

# Our run benchmark beside the filter's transition of the same motion.
TRANSITIONS = [
    ("BM_Fade", "fade"),
    ("BM_WipeToLeft", "wipeleft"),
    ("BM_Dissolve", "dissolve"),
    ("BM_PushLeft", "slideleft"),
    ("BM_CircleOpen", "circleopen"),
    ("BM_SqueezeHorizontal", "squeezeh"),
]


def run(cmd, **kw):
    return subprocess.run(cmd, check=True, capture_output=True, text=True, **kw)


def bench_json(exe, pattern):
    args = [exe, "--benchmark_filter=" + pattern, "--benchmark_format=json"]
    if QUICK:
        args.append("--benchmark_min_time=0.05")
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen")
    out = run(args, env=env).stdout
    return {b["name"]: b for b in json.loads(out)["benchmarks"] if b.get("run_type", "iteration") == "iteration"}


def ms(b):
    scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}[b["time_unit"]]
    return b["real_time"] * scale


def make_inputs(tmp, w, h):
    paths = []
    for name, src in (("a", "testsrc2"), ("b", "mandelbrot")):
        path = os.path.join(tmp, f"{name}_{w}x{h}.raw")
        run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", f"{src}=size={w}x{h}:rate={FRAMES}",
             "-frames:v", str(FRAMES), "-pix_fmt", "gbrp", "-f", "rawvideo", path])
        paths.append(path)
    return paths


def ffmpeg_seconds(inputs, w, h, graph, threads):
    args = ["ffmpeg", "-v", "info", "-benchmark", "-nostdin"]
    if threads == 1:
        args += ["-threads", "1", "-filter_threads", "1", "-filter_complex_threads", "1"]
    for path in inputs:
        args += ["-f", "rawvideo", "-pix_fmt", "gbrp", "-s", f"{w}x{h}", "-r", str(FRAMES), "-i", path]
    args += graph + ["-f", "null", "-"]
    best = None
    for _ in range(REPEAT):
        out = run(args)
        m = re.search(r"rtime=([0-9.]+)s", out.stdout + out.stderr)
        t = float(m.group(1))
        best = t if best is None else min(best, t)
    return best * 1000.0


def transitions(tmp, ours):
    print(f"Whole {FRAMES}-frame transitions (milliseconds per run; ratio = filter / ours, above 1 means ours is faster)")
    print(f"{'size':>10} {'ours':<22} {'ours ms':>9} {'filter':<11} {'1 thread':>9} {'ratio':>6} {'default':>9}")
    for w, h in SIZES:
        inputs = make_inputs(tmp, w, h)
        base1 = ffmpeg_seconds(inputs, w, h, ["-map", "0", "-map", "1"], 1)
        based = ffmpeg_seconds(inputs, w, h, ["-map", "0", "-map", "1"], 0)
        for bench, xfade in TRANSITIONS:
            key = f"{bench}/{w}/{h}/real_time"
            if key not in ours:
                continue
            graph = ["-filter_complex", f"[0][1]xfade=transition={xfade}:duration=1:offset=0,format=gbrp"]
            t1 = ffmpeg_seconds(inputs, w, h, graph, 1) - base1
            td = ffmpeg_seconds(inputs, w, h, graph, 0) - based
            mine = ms(ours[key])
            print(f"{w}x{h:<5} {bench:<22} {mine:9.1f} {xfade:<11} {t1:9.1f} {t1 / mine:6.2f} {td:9.1f}")
        print(f"{'':>10} (the filter's input reading, subtracted above: {base1:.1f} ms single thread)")
    print()


def blur(pixel):
    exe = os.path.join(BUILD, "bench", "kirrel_opencv_box_blur")
    if not os.path.exists(exe):
        print("Box blur: the reference toolkit is not installed; skipped.\n")
        return
    print("5x5 box blur of three planes, single thread (milliseconds; ratio = toolkit / ours)")
    for w, h in SIZES:
        theirs = float(run([exe, str(w), str(h)]).stdout.split()[-1])
        mine = ms(pixel[f"BM_BoxBlur/{w}/{h}"])
        print(f"{w}x{h:<5} ours {mine:8.3f}  toolkit {theirs:8.3f}  ratio {theirs / mine:5.2f}")
    print()


def bound(mixing, filters):
    print("Pixel operations at 1920x1080 against the copy bound (time / time of copying the three planes)")
    copy = ms(mixing["CopyBound/1920x1080"])
    print(f"  copy of three planes: {copy:.3f} ms ({3 * 1920 * 1080 * 2 / copy / 1e6:.2f} GB/s read + write)")
    rows = [(n.replace("/1920x1080", ""), ms(b)) for n, b in mixing.items() if n.endswith("/1920x1080") and not n.startswith("CopyBound")]
    rows += [(n.replace("/1920/1080", "").replace("BM_", ""), ms(b)) for n, b in filters.items() if n.endswith("/1920/1080")]
    for name, t in rows:
        flag = "" if t / copy <= 3 else "  (above 3x)"
        print(f"  {name:<24} {t:8.3f} ms  {t / copy:6.2f}x{flag}")
    print()


def main():
    for tool in ("ffmpeg",):
        if not shutil.which(tool):
            sys.exit(f"{tool} is not installed; run bench/compare, which installs it")
    print(f"Machine: {os.cpu_count()} cores; {open('/proc/cpuinfo').read().split('model name')[1].split(':')[1].splitlines()[0].strip()}\n")
    ours = bench_json(os.path.join(BUILD, "bench", "kirrel_run_bench"), "BM_(Fade|WipeToLeft|Dissolve|PushLeft|CircleOpen|SqueezeHorizontal)/")
    pixel = bench_json(os.path.join(BUILD, "bench", "kirrel_pixel_bench"), "/1920|/640")
    mixing = {n: b for n, b in pixel.items() if not n.startswith("BM_")}
    filters = {n: b for n, b in pixel.items() if n.startswith("BM_")}
    with tempfile.TemporaryDirectory() as tmp:
        transitions(tmp, ours)
    blur(filters)
    bound(mixing, filters)


if __name__ == "__main__":
    main()
