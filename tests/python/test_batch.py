"""kipcc-batch: what it makes, what it leaves alone, what it reports; and what becomes of a killed worker's work."""

import contextlib
import os
import pathlib
import re
import signal
import subprocess
import sys
import time

import make_raw
import numpy
import pytest
from PIL import Image

import kipcc

BUILD = pathlib.Path(os.environ["KIPCC_BUILD"])


def batch(*arguments, scheduler=None):
    where = ["--scheduler", scheduler] if scheduler else ["--workers", "1"]
    command = [sys.executable, str(BUILD / "python/kipcc-batch"), *map(str, arguments), *where]
    return subprocess.run(command, capture_output=True, text=True, timeout=300)


@pytest.fixture
def cluster():
    """A scheduler and two workers, each started by hand: the address and the workers' processes."""
    with contextlib.ExitStack() as stack:

        def start(module, *arguments):
            command = [sys.executable, "-m", module, *arguments]
            process = subprocess.Popen(command, stderr=subprocess.PIPE, text=True, start_new_session=True)
            stack.callback(process.wait)
            stack.callback(lambda: process.poll() is None and os.killpg(process.pid, signal.SIGKILL))
            return process

        scheduler = start("distributed.cli.dask_scheduler", "--host", "127.0.0.1", "--port", "0", "--no-dashboard")
        lines = iter(scheduler.stderr.readline, "")
        address = next(m[0] for m in (re.search(r"tcp://127\.0\.0\.1:\d+", line) for line in lines) if m)
        worker = ("distributed.cli.dask_worker", address, "--nthreads", "1", "--no-dashboard")
        yield address, [start(*worker, "--no-nanny") for _ in range(2)]


def bytes_of(folder):
    return {path.name: path.read_bytes() for path in pathlib.Path(folder).iterdir()}


def test_a_killed_worker_costs_only_time(tmp_path, cluster):
    address, workers = cluster
    files = [tmp_path / f"{i}.dng" for i in range(24)]
    for i, file in enumerate(files):
        make_raw.write(file, make_raw.random_mosaic(i, 800, 1200))
    out = tmp_path / "out"
    command = [sys.executable, BUILD / "python/kipcc-batch", "develop", *files, "--out", out, "--scheduler", address]
    with subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as running:
        while running.poll() is None and len(list(out.glob("*.png"))) < len(files) // 3:
            time.sleep(0.02)
        assert running.poll() is None and len(list(out.glob("*.png"))) < len(files)
        workers[0].kill()
        said = running.communicate(timeout=240)[0]
    assert running.returncode == 0 and "24 converted, 0 there already, 0 failed" in said
    one = tmp_path / "one"
    assert batch("develop", *files, "--out", one).returncode == 0
    assert bytes_of(out) == bytes_of(one) and len(bytes_of(out)) == len(files)


def test_develop_is_what_the_example_makes(tmp_path):
    program = BUILD / "raw"
    if not program.exists():
        pytest.skip("the example has not been built")
    make_raw.write(tmp_path / "a.dng", make_raw.random_mosaic(7))
    for method in ("linear", "ahd"):
        assert batch("develop", "--method", method, tmp_path / "a.dng", "--out", tmp_path / method).returncode == 0
        subprocess.run([program, method, tmp_path / "a.dng", tmp_path / "a.png"], check=True)
        made, expected = (numpy.array(Image.open(p)) for p in (tmp_path / method / "a.png", tmp_path / "a.png"))
        numpy.testing.assert_array_equal(made, expected)


def test_apply_reports_what_fails_and_skips_what_is_there(tmp_path):
    rng = numpy.random.default_rng(5)
    rgb = rng.integers(0, 256, (30, 40, 3), "u1")
    Image.fromarray(rgb).save(tmp_path / "a.png")
    numpy.save(tmp_path / "b.npy", rgb)
    (tmp_path / "cut.png").write_bytes((tmp_path / "a.png").read_bytes()[:500])
    files, out = [tmp_path / n for n in ("a.png", "b.npy", "cut.png", "none.png")], tmp_path / "out"
    first = batch("apply", "kipiBGRToLab_8u_C3R", *files, "--out", out)
    assert first.returncode == 1 and "2 converted, 0 there already, 2 failed" in first.stdout
    assert re.search(r"cut\.png: .*truncated", first.stderr) and re.search(r"none\.png: .*No such file", first.stderr)
    bgr = numpy.ascontiguousarray(rgb[..., ::-1])
    numpy.testing.assert_array_equal(numpy.load(out / "a.npy"), kipcc.kipiBGRToLab_8u_C3R(bgr))
    numpy.testing.assert_array_equal(numpy.load(out / "b.npy"), kipcc.kipiBGRToLab_8u_C3R(rgb))
    assert sorted(bytes_of(out)) == ["a.npy", "b.npy"]
    (out / "a.npy").write_bytes(b"kept")
    second = batch("apply", "kipiBGRToLab_8u_C3R", *files[:2], "--out", out)
    assert second.returncode == 0 and "0 converted, 2 there already" in second.stdout
    assert (out / "a.npy").read_bytes() == b"kept"
    again = batch("apply", "kipiReduceBits_8u_C3R", files[0], "--out", out, "--set", "levels=2", "--again")
    assert again.returncode == 0
    numpy.testing.assert_array_equal(numpy.array(Image.open(out / "a.png")), kipcc.kipiReduceBits_8u_C3R(rgb, levels=2))


def test_convert_takes_files_of_several_frames(tmp_path):
    size, frame = (34, 18), 34 * 18 * 3 // 2
    frames = numpy.random.default_rng(6).integers(0, 256, (3, frame), "u1")
    frames.tofile(tmp_path / "a.yuv")
    frames[0, 1:].tofile(tmp_path / "short.yuv")
    how = ("--from", "NV12", "--size", "34x18", "--matrix", "bt709", "--range", "limited", "--to", "rgb24")
    run = batch("convert", *how, tmp_path / "a.yuv", tmp_path / "short.yuv", "--out", tmp_path / "out")
    assert run.returncode == 1 and re.search(r"short\.yuv: 917 bytes are not whole frames of 918", run.stderr)
    expected = [kipcc.convert(f, "nv12", "rgb24", size=size, matrix="bt709", range="limited") for f in frames]
    assert (tmp_path / "out/a.rgb24").read_bytes() == b"".join(e.tobytes() for e in expected)


@pytest.mark.parametrize(
    "reason, arguments",
    [
        ("matrix", ("convert", "--from", "nv12", "--size", "4x4", "--to", "rgb24", "a/x.yuv")),
        ("no format", ("convert", "--from", "nv99", "--size", "4x4", "--to", "rgb24", "a/x.yuv")),
        ("no function", ("apply", "kipiNothing_8u_C3R", "a/x.png")),
        ("would both become", ("develop", "a/x.dng", "b/x.dng")),
        ("tcp://127.0.0.1:9", ("develop", "a/x.dng", "--scheduler", "tcp://127.0.0.1:9")),
    ],
)
def test_refused_at_once(tmp_path, monkeypatch, reason, arguments):
    monkeypatch.setattr("distributed.Client.__init__", _refuse_connection)
    from kipcc import batch as module

    with pytest.raises(SystemExit, match=reason):
        module.main([*arguments, "--out", str(tmp_path / "out")])


def _refuse_connection(self, *arguments, **options):
    raise OSError("nobody answers")
