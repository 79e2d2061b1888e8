#!/usr/bin/env python3
"""How `kirrel batch` uses the cores: 200 small GIFs through one recorded wipe, once with one job
and once with as many as the machine has cores, each the best of a few runs on the wall clock.

Usage: bench/batch_scaling.py [COUNT]   (build first: scripts/build kirrel)
Run it on an otherwise idle machine, with the real ImageMagick first on PATH (PATH=/usr/bin:$PATH).
"""
import os
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
KIRREL = os.path.join(os.environ.get("KIRREL_BUILD_DIR", os.path.join(ROOT, "build")), "kirrel")
COUNT = int(sys.argv[1]) if len(sys.argv) > 1 else 200
REPEAT = 3
SCRIPT = """{"host": {"animation": "in/clip000.gif"}, "steps": [
  {"open": "Wipes"}, {"set": {"control": "cboWipeOptions", "text": "Primary Color"}},
  {"click": "cmd_Run"}]}"""


def timed(work, jobs, inputs):
    best = None
    for _ in range(REPEAT):
        out = os.path.join(work, "out-%d" % jobs)
        shutil.rmtree(out, ignore_errors=True)
        start = time.monotonic()
        subprocess.run([KIRREL, "batch", "wipe.json", *inputs, "--out", out, "--jobs", str(jobs)],
                       cwd=work, check=True, stderr=subprocess.DEVNULL)
        took = time.monotonic() - start
        best = took if best is None else min(best, took)
    return best


def main():
    cores = os.cpu_count() or 1
    with tempfile.TemporaryDirectory() as work:
        os.makedirs(os.path.join(work, "in"))
        with open(os.path.join(work, "wipe.json"), "w") as f:
            f.write(SCRIPT)
        first = os.path.join(work, "in", "clip000.gif")
        subprocess.run(["ffmpeg", "-v", "error", "-nostdin", "-f", "lavfi", "-i", "testsrc2=size=64x48:rate=10",
                        "-frames:v", "8", "-y", first], check=True)
        inputs = []
        for i in range(COUNT):
            name = os.path.join("in", "clip%03d.gif" % i)
            if i:
                shutil.copy(first, os.path.join(work, name))
            inputs.append(name)
        one = timed(work, 1, inputs)
        many = timed(work, cores, inputs)
        print("%d GIFs: %.2f s with 1 job (%.1f files/s), %.2f s with %d jobs (%.1f files/s): %.2fx"
              % (COUNT, one, COUNT / one, many, cores, COUNT / many, one / many))


if __name__ == "__main__":
    main()
