#!/usr/bin/env python3
"""Times Kirrel's runs and pixel operations against a reference video filter's cross-fades and a
reference toolkit's box blur on this machine, in one go, and prints the ratios.

Usage: bench/compare [--quick]   (the wrapper installs what is missing and builds first)

Figures:
  - whole 60-frame transitions at 640x480 and 1920x1080: ours through the in-memory host, theirs as
    the filter's own time (a run with the transition minus a run that only reads the same inputs),
    single thread against single thread, then ours on every core against theirs with default threads;
  - the 5x5 box blur on three planes, single thread on both sides;
  - every pixel operation's time against the copy bound for the bytes it must touch: a plain copy of
    three planes (three read, three written) scaled to the planes the operation reads and writes;
    single thread, and on every core against the copy on every core.
Every figure, ours and theirs, is the best of a few repetitions.
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


def bench_json(exe, pattern, threads):
    """Runs one benchmark program; threads 1 keeps our pixel work on one core, 0 uses every core."""
    args = [exe, "--benchmark_filter=" + pattern, "--benchmark_format=json",
            f"--benchmark_repetitions={REPEAT}"]
    if QUICK:
        args.append("--benchmark_min_time=0.05")
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen", KIRREL_THREADS=str(threads or os.cpu_count()))
    out = run(args, env=env).stdout
    # The best of the repetitions, as for the reference filter: on a shared machine the slow runs are
    # the ones something else disturbed.
    best = {}
    for b in json.loads(out)["benchmarks"]:
        if b.get("run_type", "iteration") != "iteration":
            continue
        name = b["name"].replace("/real_time", "")
        if name not in best or ms(b) < ms(best[name]):
            best[name] = b
    return best


# Planes each operation must read and write on a three-plane picture (the copy: 3 read + 3 written).
# A mask counts once; a band or a half picture still counts whole, as its worst frame touches it all.
PLANES = {
    "CopyBound": 6, "MixBufferColor": 6, "MixBufferNegative": 6, "MixBufferChannels": 6,
    "FillBufferColor": 3, "AlphaMix": 10, "AlphaMixThresh": 10, "ASlideOverlay": 11,
    "SqueezeOverlay": 9, "ResizeBuffer/up": 4.7, "ResizeBuffer/down": 9.75,
    "BoxBlurInPlace": 6, "TriBlur": 6, "Negative": 6, "GreyScale": 6, "GreyOut": 6, "Threshold": 2,
    "Posterize": 6, "NightVision": 6, "ChalkFilter": 6, "IncreaseBrightness": 6, "IncreaseDarkness": 6,
    "WhiteNoise": 6, "WhiteNoiseAlpha": 7, "CFXFilter1": 12,
}


def planes(name):
    for key in (name, name.split("/")[0]):
        if key in PLANES:
            return PLANES[key]
    return 9  # A and B read, A written


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


def transitions(tmp, ours1, oursAll):
    print(f"Whole {FRAMES}-frame transitions (milliseconds per run; ratio = filter / ours, above 1 means ours is faster)")
    print(f"{'size':>10} {'ours':<22} {'1 thread':>9} {'filter':<11} {'1 thread':>9} {'ratio':>6}"
          f" {'ours all':>9} {'filter all':>11} {'ratio':>6}")
    for w, h in SIZES:
        inputs = make_inputs(tmp, w, h)
        base1 = ffmpeg_seconds(inputs, w, h, ["-map", "0", "-map", "1"], 1)
        based = ffmpeg_seconds(inputs, w, h, ["-map", "0", "-map", "1"], 0)
        for bench, xfade in TRANSITIONS:
            key = f"{bench}/{w}/{h}"
            if key not in ours1:
                continue
            graph = ["-filter_complex", f"[0][1]xfade=transition={xfade}:duration=1:offset=0,format=gbrp"]
            t1 = ffmpeg_seconds(inputs, w, h, graph, 1) - base1
            td = ffmpeg_seconds(inputs, w, h, graph, 0) - based
            m1, ma = ms(ours1[key]), ms(oursAll[key])
            print(f"{w}x{h:<5} {bench:<22} {m1:9.1f} {xfade:<11} {t1:9.1f} {t1 / m1:6.2f}"
                  f" {ma:9.1f} {td:11.1f} {td / ma:6.2f}")
        print(f"{'':>10} (the filter's input reading, subtracted above: {base1:.1f} ms single thread,"
              f" {based:.1f} ms default threads)")
    print()


def blur(pixel):
    exe = os.path.join(BUILD, "bench", "kirrel_opencv_box_blur")
    if not os.path.exists(exe):
        print("Box blur: OpenCV is not installed; skipped.\n")
        return
    print("5x5 box blur of three planes, single thread (milliseconds; ratio = OpenCV / ours)")
    for w, h in SIZES:
        theirs = float(run([exe, str(w), str(h)]).stdout.split()[-1])
        mine = ms(pixel[f"BM_BoxBlur/{w}/{h}"])
        print(f"{w}x{h:<5} ours {mine:8.3f}  OpenCV {theirs:8.3f}  ratio {theirs / mine:5.2f}")
    print()


def bound(one, every):
    print("Pixel operations at 1920x1080 against the copy bound for the planes each must touch")
    print("(distance = time / (copy time x planes / 6); the target is 3 or less)")
    copy1, copyAll = ms(one["CopyBound/1920x1080"]), ms(every["CopyBound/1920x1080"])
    gbs = lambda t: 3 * 1920 * 1080 * 2 / t / 1e6
    print(f"  copy of three planes: {copy1:.3f} ms on one core ({gbs(copy1):.1f} GB/s read + write),"
          f" {copyAll:.3f} ms on every core ({gbs(copyAll):.1f} GB/s)")
    print(f"  {'operation':<24} {'planes':>6} {'1 core ms':>10} {'distance':>9} {'all ms':>8} {'distance':>9}")
    for name, b in one.items():
        if not re.search(r"/1920(x|/)1080$", name) or name.startswith("CopyBound"):
            continue
        short = re.sub(r"/1920(x|/)1080$", "", name).replace("BM_", "")
        n = planes(short)
        t1, ta = ms(b), ms(every[name])
        d1, da = t1 / (copy1 * n / 6), ta / (copyAll * n / 6)
        flag = "" if min(d1, da) <= 3 else "  (above 3)"
        print(f"  {short:<24} {n:6.2f} {t1:10.3f} {d1:9.2f} {ta:8.3f} {da:9.2f}{flag}")
    print()


def main():
    for tool in ("ffmpeg",):
        if not shutil.which(tool):
            sys.exit(f"{tool} is not installed; run bench/compare, which installs it")
    print(f"Machine: {os.cpu_count()} cores; {open('/proc/cpuinfo').read().split('model name')[1].split(':')[1].splitlines()[0].strip()}\n")
    runs = os.path.join(BUILD, "bench", "kirrel_run_bench")
    pattern = "BM_(Fade|WipeToLeft|Dissolve|PushLeft|CircleOpen|SqueezeHorizontal)/"
    ours1, oursAll = bench_json(runs, pattern, 1), bench_json(runs, pattern, 0)
    pixelExe = os.path.join(BUILD, "bench", "kirrel_pixel_bench")
    pixel1, pixelAll = bench_json(pixelExe, "/1920|/640", 1), bench_json(pixelExe, "/1920", 0)
    with tempfile.TemporaryDirectory() as tmp:
        transitions(tmp, ours1, oursAll)
    blur(pixel1)
    bound(pixel1, pixelAll)


if __name__ == "__main__":
    main()
