"""kipcc-batch: whole folders of pictures or frames, on this machine or on a cluster."""

import argparse
import ast
import collections
import glob
import os
import sys
import uuid

import numpy

import kipcc

Job = collections.namedtuple("Job", "source result")


_COLOURS = ("matrix", "range", "site", "to_matrix", "to_range", "to_site", "dither", "chroma", "demosaic")
_MODES = {1: "L", 3: "RGB", 4: "RGBA"}  # of Pillow, by the samples of a pixel


class Develop:
    """Camera raw files to PNG."""

    def __init__(self, arguments):
        self.method = arguments.method

    def result_name(self, stem):
        return stem + ".png"

    def __call__(self, source, result):
        from PIL import Image
        from kipcc import _raw

        os.stat(source)  # tells why a file cannot be opened, which LibRaw does not
        Image.fromarray(_raw.develop(source, self.method)).save(result, format="PNG")


class Convert:
    """Files of frames, one after the other, to files of frames of another format."""

    def __init__(self, arguments):
        self.options = {name: value for name in _COLOURS if (value := getattr(arguments, name)) is not None}
        self.source, self.result, self.size = arguments.source_format, arguments.result_format, arguments.size
        self._convert(numpy.zeros(_frame_bytes(self.source, self.size), "u1"))  # refuses what does not fit, at once

    def result_name(self, stem):
        return f"{stem}.{kipcc.format_of(self.result).name}"

    def _convert(self, frame):
        return kipcc.convert(frame, self.source, self.result, size=self.size, **self.options)

    def __call__(self, source, result):
        frame, length = _frame_bytes(self.source, self.size), os.path.getsize(source)
        if length == 0 or length % frame:
            raise ValueError(f"{length} bytes are not whole frames of {frame}")
        with open(result, "wb") as file:
            for place in range(0, length, frame):
                converted = self._convert(numpy.fromfile(source, "u1", frame, offset=place))
                for plane in converted if isinstance(converted, tuple) else (converted,):
                    plane.tofile(file)


class Apply:
    """One function of kipcc.h on pictures, or on arrays in numpy's files."""

    def __init__(self, arguments):
        self.name, self.options = arguments.function, dict(arguments.set)
        if self.name not in kipcc.functions:
            raise ValueError(f"there is no function {self.name}")
        function = kipcc.functions[self.name]
        self.source, self.result = function.source or function.result, function.result
        self.bgr = [space.startswith(("BGR", "SBGR")) for space in (function.source_space, function.result_space)]
        colour = function.result_space in ("RGB", "BGR", "Gray", function.source_space)
        one = self.result.planes == 1 and self.result.samples in _MODES
        self.picture = colour and one and self.result.dtype == numpy.uint8

    def result_name(self, stem):
        return stem + (".png" if self.picture else ".npy" if self.result.planes == 1 else ".npz")

    def __call__(self, source, result):
        made = getattr(kipcc, self.name)(self._read(source), **self.options)
        with open(result, "wb") as file:
            if self.picture:
                from PIL import Image

                Image.fromarray(_swapped(made) if self.bgr[1] else made).save(file, format="PNG")
            elif self.result.planes == 1:
                numpy.save(file, made)
            else:
                numpy.savez(file, *made)

    def _read(self, source):
        if source.endswith(".npy"):
            return numpy.load(source, allow_pickle=False)
        if source.endswith(".npz"):
            with numpy.load(source, allow_pickle=False) as planes:
                return tuple(planes[name] for name in planes.files)
        from PIL import Image

        interleaved = self.source.planes == 1 and self.source.samples in _MODES
        if self.source.dtype != numpy.uint8 or not interleaved:
            raise ValueError(f"{self.name} takes no pictures of this kind, but arrays in .npy or .npz files")
        with Image.open(source) as picture:
            array = numpy.array(picture.convert(_MODES[self.source.samples]))
        return _swapped(array) if self.bgr[0] else array


def _swapped(array):
    """Red and blue exchanged."""
    return numpy.ascontiguousarray(array[..., [2, 1, 0, 3][: array.shape[2]]] if array.ndim == 3 else array)


def _frame_bytes(format, size):
    return sum(int(numpy.prod(shape)) * dtype.itemsize for shape, dtype in kipcc.planes_of(format, size))


def _part_names(result, which):
    """Names that results have until they are whole. Two workers may be at one when the first is taken for dead."""
    folder, name = os.path.split(result)
    return os.path.join(folder, f".{name}.{which}.part")


def run(work, job):
    """Makes one result under another name, and renames it. The reason where that fails, else None."""
    kipcc.kipSetNumThreads(1)  # there is a process for each processor; and error diffusion follows the number
    part = _part_names(job.result, uuid.uuid4().hex)
    try:
        work(job.source, part)
        os.replace(part, job.result)
    except Exception as error:
        return " ".join(str(error).split()) or type(error).__name__
    finally:
        if os.path.exists(part):
            os.remove(part)


def jobs_of(work, files, folder):
    """A job for each file. ValueError where two would have one result."""
    jobs = {}
    for file in map(os.path.abspath, files):
        stem = os.path.splitext(os.path.basename(file))[0]
        result = os.path.join(os.path.abspath(folder), work.result_name(stem))
        if result == file:
            raise ValueError(f"{file} would be written over; choose another folder")
        if result in jobs:
            raise ValueError(f"{jobs[result].source} and {file} would both become {result}")
        jobs[result] = Job(file, result)
    return list(jobs.values())


def connect(arguments, jobs):
    """A client of the scheduler that was named, or of one with workers on this machine."""
    from distributed import Client

    if arguments.scheduler:
        return Client(arguments.scheduler, timeout=20)
    workers = min(arguments.workers or len(os.sched_getaffinity(0)), len(jobs))
    return Client(n_workers=workers, threads_per_worker=1, dashboard_address=None)


def convert_all(work, jobs, client):
    """Runs the jobs; yields those that failed, with the reasons."""
    from distributed import progress, wait

    futures = client.map(run, [work] * len(jobs), jobs, pure=False)
    if sys.stdout.isatty():
        progress(futures, notebook=False)
        print()
    wait(futures)
    for job, future in zip(jobs, futures):
        error = future.exception()  # of workers that died again and again
        reason = str(error) if error else future.result()
        if reason:
            yield job, reason
        for left in glob.glob(_part_names(glob.escape(job.result), "*")):
            os.remove(left)  # of a worker that was killed


def size(text):
    width, height = map(int, text.lower().split("x"))
    return width, height


def setting(text):
    name, value = text.split("=", 1)
    return name, ast.literal_eval(value)


def add_command(commands, work, fill):
    """A command with its own arguments before those that all have."""
    command = commands.add_parser(work.__name__.lower(), help=work.__doc__, description=work.__doc__)
    fill(command)
    command.add_argument("files", nargs="+", metavar="FILE")
    command.add_argument("--out", required=True, metavar="FOLDER", help="where the results go")
    command.add_argument("--scheduler", metavar="ADDRESS", help="of a Dask cluster, such as tcp://host:8786")
    command.add_argument("--workers", type=int, metavar="N", help="processes on this machine; one for each processor")
    command.add_argument("--again", action="store_true", help="convert also what is there already")
    command.set_defaults(work=work)


def fill_develop(command):
    command.add_argument("--method", choices=("linear", "ahd"), default="ahd", help="of demosaicing")


def fill_convert(command):
    command.add_argument("--from", dest="source_format", required=True, metavar="FORMAT")
    command.add_argument("--to", dest="result_format", required=True, metavar="FORMAT")
    command.add_argument("--size", type=size, required=True, metavar="WIDTHxHEIGHT")
    for name in _COLOURS:
        command.add_argument(f"--{name.replace('_', '-')}", help="as in kipcc.convert")


def fill_apply(command):
    command.add_argument("function", metavar="FUNCTION")
    command.add_argument("--set", type=setting, action="append", default=[], metavar="NAME=VALUE", help="an argument")


def parser():
    whole = argparse.ArgumentParser(prog="kipcc-batch", description=__doc__)
    commands = whole.add_subparsers(required=True)
    for work, fill in ((Develop, fill_develop), (Convert, fill_convert), (Apply, fill_apply)):
        add_command(commands, work, fill)
    return whole


def main(arguments=None):
    arguments = parser().parse_args(arguments)
    try:
        work = arguments.work(arguments)
        jobs = jobs_of(work, arguments.files, arguments.out)
        os.makedirs(arguments.out, exist_ok=True)
    except (ValueError, OSError) as error:
        sys.exit(f"kipcc-batch: {error}")
    waiting = [job for job in jobs if arguments.again or not os.path.exists(job.result)]
    failed = []
    if waiting:
        try:
            client = connect(arguments, waiting)
        except OSError as error:
            sys.exit(f"kipcc-batch: {arguments.scheduler}: {error}")
        with client:
            failed = list(convert_all(work, waiting, client))
    print(f"{len(waiting) - len(failed)} converted, {len(jobs) - len(waiting)} there already, {len(failed)} failed")
    for job, reason in failed:
        print(f"{job.source}: {reason}", file=sys.stderr)
    return 1 if failed else 0
