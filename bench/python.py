"""Measures the Python module beside others: bench/python.py [FOLDER WITH kipcc]

One thread, 1920 x 1080. Every figure is the best of several rounds, in which the candidates take turns.
"""

import os
import pathlib
import sys
import tempfile
import threading
import time

sys.path.insert(0, sys.argv[1] if len(sys.argv) > 1 else "build/x86-64/python")

import numpy

import kipcc

WIDTH, HEIGHT, ROUNDS = 1920, 1080, 40


def best(candidates, calls, rounds=ROUNDS):
    """The shortest time of a call of each candidate, in seconds."""
    times = dict.fromkeys(candidates, float("inf"))
    for _ in range(rounds):
        for name, function in candidates.items():
            begin = time.perf_counter()
            for _ in range(calls):
                function()
            times[name] = min(times[name], (time.perf_counter() - begin) / calls)
    return times


def peers(nv12, out):
    candidates = {}
    try:
        import cv2

        cv2.setNumThreads(1)
        candidates["OpenCV cvtColor"] = lambda: cv2.cvtColor(nv12, cv2.COLOR_YUV2RGB_NV12, dst=out)
    except ImportError:
        print("no OpenCV here")
    try:
        import av

        frame = av.VideoFrame.from_ndarray(nv12[: HEIGHT * 3 // 2], format="nv12")
        candidates["PyAV to_ndarray"] = lambda: frame.to_ndarray(format="rgb24")
    except (ImportError, ValueError) as error:
        print("no PyAV here:", error)
    return candidates


def frames():
    nv12 = numpy.random.default_rng(1).integers(0, 256, (HEIGHT * 3 // 2, WIDTH), "u1")
    out = numpy.empty((HEIGHT, WIDTH, 3), "u1")
    return nv12, out


def to_rgb(nv12, out, chroma="linear"):
    kipcc.convert(nv12, "nv12", "rgb24", matrix="bt601", range="limited", chroma=chroma, out=out)


def compare():
    nv12, out = frames()
    ours = {
        "kipcc": lambda: to_rgb(nv12, out),
        "kipcc, nearest chroma": lambda: to_rgb(nv12, out, "nearest"),  # as OpenCV and PyAV have it
    }
    times = best({**ours, **peers(nv12, numpy.empty_like(out))}, 3)
    for name, seconds in times.items():
        ratios = " and ".join(f"{seconds / times[our]:.2f}" for our in ours)
        print(
            f"NV12 to RGB24, {name:22} {WIDTH * HEIGHT / seconds / 1e6:5.0f} Mpixel/s; ours is {ratios} times as fast"
        )


def overhead():
    rgb = numpy.zeros((16, 16, 3), "u1")
    out, nv12 = numpy.empty_like(rgb), numpy.zeros((24, 16), "u1")
    planes = kipcc.kipiRGBToYCbCr420_8u_C3P3R(rgb)
    times = best(
        {
            "kipiRGBToYCbCr_8u_C3R": lambda: kipcc.kipiRGBToYCbCr_8u_C3R(rgb),
            "kipiRGBToYCbCr_8u_C3R, out": lambda: kipcc.kipiRGBToYCbCr_8u_C3R(rgb, out=out),
            "kipiRGBToYCbCr420_8u_C3P3R, out": lambda: kipcc.kipiRGBToYCbCr420_8u_C3P3R(rgb, out=planes),
            "convert, RGB24 to BGR24, out": lambda: kipcc.convert(rgb, "rgb24", "bgr24", out=out),
            "convert, NV12 to RGB24, out": lambda: to_rgb(nv12, out),
        },
        1000,
    )
    for name, seconds in times.items():
        print(f"16 x 16, {name:32} {seconds * 1e6:5.2f} microseconds a call")


def threads():
    def work(count):
        def repeat(nv12, out):
            for _ in range(50):
                to_rgb(nv12, out)

        running = [threading.Thread(target=repeat, args=pictures[i]) for i in range(count)]
        for thread in running:
            thread.start()
        for thread in running:
            thread.join()

    pictures = [frames() for _ in range(2)]
    times = best({1: lambda: work(1), 2: lambda: work(2)}, 1, 25)
    print(f"two Python threads convert {2 * times[1] / times[2]:.2f} times as many frames as one")


def batch(count=12):
    """kipcc-batch, without the time that it takes to start and to stop its processes."""
    from kipcc import batch as module

    os.environ["PYTHONPATH"] = str(pathlib.Path(kipcc.__file__).parents[1])  # for the processes
    seconds = {}
    with tempfile.TemporaryDirectory(dir="/dev/shm" if os.path.isdir("/dev/shm") else None) as folder:
        mosaic = numpy.random.default_rng(2).integers(0, 256, (HEIGHT // 2, WIDTH // 2), "u1")
        files = [f"{folder}/{i}.npy" for i in range(count)]
        for file in files:
            numpy.save(file, mosaic)
        command = ["apply", "kipiDemosaicAHD_8u_C1C3R", "--set", "grid=1", *files, "--out", folder + "/out"]  # PNG
        for workers in (1, 2):
            arguments = module.parser().parse_args([*command, "--workers", str(workers)])
            work = arguments.work(arguments)
            jobs = module.jobs_of(work, arguments.files, arguments.out)
            os.makedirs(arguments.out, exist_ok=True)
            with module.connect(arguments, jobs) as client:
                times = []
                for _ in range(2):
                    begin = time.perf_counter()
                    assert not list(module.convert_all(work, jobs, client))
                    times.append(time.perf_counter() - begin)
                seconds[workers] = min(times)
    print(f"kipcc-batch with two processes converts {seconds[1] / seconds[2]:.2f} times as many files as with one")


if __name__ == "__main__":
    compare()
    overhead()
    threads()
    batch()
