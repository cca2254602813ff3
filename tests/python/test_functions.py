"""All functions of kipcc.h, called from Python and, by their prototypes, through ctypes."""

import copy
import ctypes
import os
import pathlib
import pickle
import re
import threading
import warnings

import numpy
import pytest

import kipcc

HEADER = (pathlib.Path(__file__).parents[2] / "include/kipcc.h").read_text()
LIBRARY = ctypes.CDLL(str(pathlib.Path(os.environ["KIPCC_BUILD"]) / "libkipcct7.so.6.1"))
PROTOTYPES = {
    name: [" ".join(parameter.split()) for parameter in parameters.split(",")]
    for name, parameters in re.findall(r"KIPAPI KipStatus (kipi\w+)\((.*?)\);", HEADER, re.S)
}
TYPES = {"8u": "u1", "8s": "i1", "16u": "u2", "16s": "i2", "32s": "i4", "32f": "f4"}
SIZES = [(36, 12), (37, 13), (3, 1)]
STEPS_CHECKED = "RGBToCbYCr422Gamma|(RGB|BGR)565To(RGB|BGR)|RGBToRGB565|BGRToBGR565"
TWIST = [[0.3, 0.6, 0.1, 0.01], [-0.2, 0.9, 0.3, 0.02], [0.1, 0.2, 0.7, 0.0], [0.2, 0.1, 0.4, 0.3]]


class Size(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int)]


class Rect(ctypes.Structure):
    _fields_ = [(n, ctypes.c_int) for n in ("x", "y", "width", "height")]


def options_of(name):
    """What a call of this function has besides pictures, other than the defaults."""
    text = ",".join(PROTOTYPES[name])
    options = {}
    if "twist" in text:
        options["twist"] = TWIST if "twist[4][4]" in text else TWIST[:3]
    if "coeffs" in text:
        options["coeffs"] = [0.2, 0.5, 0.3]
    if "vMin" in text:
        options.update(vMin=-0.25, vMax=1.5)
    if "noise" in text:
        options.update(noise=20, dtype=kipcc.kipDitherStucki, levels=5)
    if "aval" in text:
        options["aval"] = 77
    if "grid" in text:
        options["grid"] = kipcc.kipiBayerGBRG
    return options


def c_call(name, source, out, size, options, roi=None):
    """Calls the function as its prototype says. Pictures are lists of arrays."""

    def floats(values):
        array = numpy.array(values, "f4")
        keep.append(array)
        return array.ctypes.data_as(ctypes.c_void_p)

    keep, given, picture = [], [], None
    for parameter in PROTOTYPES[name]:
        kind, word, planes = re.fullmatch(r"(?:const )?(\w+)\*? ?(\w+)((?:\[\d\])*)", parameter).groups()
        if word in ("pSrc", "pDst", "pSrcDst"):
            picture = source if word == "pSrc" else out
            addresses = [plane.ctypes.data for plane in picture]
            given.append((ctypes.c_void_p * 4)(*addresses) if planes else ctypes.c_void_p(addresses[0]))
        elif word in ("srcStep", "dstStep", "srcDstStep"):
            steps = [plane.strides[0] for plane in picture]
            given.append((ctypes.c_int * 4)(*steps) if planes else ctypes.c_int(steps[0]))
        elif kind == "KipiSize":
            given.append(Size(*size))
        elif kind == "KipiRect":
            given.append(Rect(*(roi or (0, 0, *size))))
        elif word in ("twist", "coeffs"):
            given.append(floats(options[word]))
        elif word in ("vMin", "vMax"):
            given.append(ctypes.c_float(options[word]))
        else:
            given.append(ctypes.c_int(options[word]) if word in options else None)
    return getattr(LIBRARY, name)(*given)


def random_plane(rng, dtype, shape):
    if dtype.kind == "f":
        return rng.random(shape, "f4")
    limits = numpy.iinfo(dtype)
    return rng.integers(limits.min, limits.max, shape, dtype, endpoint=True)


def shapes_of(side, size):
    """The largest planes of a picture that have a meaning: chroma for the last group as well."""
    width, height = size
    shapes = [(height, width, side.samples) if side.samples > 1 else (height, width)]
    for plane in range(1, side.planes):
        whole = (-(-height // side.rows_per_chroma), -(-width // side.columns_per_chroma))
        shapes.append((*whole, 2) if side.planes == 2 else whole)
    return shapes


def without_gaps(name):
    return not name.endswith("R")


def source_of(name, size):
    function = kipcc.functions[name]
    side = function.source or function.result
    rng = numpy.random.default_rng(sum(name.encode()))
    planes = [random_plane(rng, side.dtype, shape) for shape in shapes_of(side, size)]
    if without_gaps(name) and function.source_space.endswith("420"):
        planes[1:] = [numpy.ascontiguousarray(p[: size[1] // 2, : size[0] // 2]) for p in planes[1:]]
    return planes


def argument(planes):
    return planes[0] if len(planes) == 1 else tuple(planes)


def planes_of(result):
    return list(result) if isinstance(result, tuple) else [result]


def call(name, source, **options):
    """The status and the planes of the result; None where the call was refused."""
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        try:
            result = getattr(kipcc, name)(argument(source), **options)
        except kipcc.Error as error:
            assert error.function == name and error.sentence
            return error.status, None
    assert all(w.category is kipcc.ConversionWarning for w in caught)
    return bool(caught), planes_of(result)


def spread(planes, upside_down=False):
    """The same planes as views of larger ones with other bytes around, from the bottom up if wanted."""
    views = []
    for plane in planes:
        room = numpy.full((plane.shape[0] + 4, plane.shape[1] + 6, *plane.shape[2:]), 77, plane.dtype)
        view = room[2:-2, 3:-3]
        view = view[::-1] if upside_down else view
        view[...] = plane
        views.append(view)
    return views


def around(view):
    """What lies around the planes of spread."""
    room = view.base.copy()
    room[2:-2, 3:-3] = 77
    return room


def test_all_functions_of_the_header_are_there():
    assert len(PROTOTYPES) == 483
    assert list(kipcc.functions) == list(PROTOTYPES)
    for name in PROTOTYPES:
        function = getattr(kipcc, name)
        assert pickle.loads(pickle.dumps(function)) is function
        assert function.__doc__ and function.__text_signature__


@pytest.mark.parametrize("name", PROTOTYPES)
def test_bytes_and_status_are_those_of_the_library(name):
    options = options_of(name)
    in_place = kipcc.functions[name].source is None
    for size in SIZES:
        source = source_of(name, size)
        status, result = call(name, copy.deepcopy(source) if in_place else source, **options)
        if in_place:
            expected = copy.deepcopy(source)
        elif result is None:
            expected = [numpy.zeros((2 * size[1], 8 * size[0]), "f4")] * 4
        else:
            expected = [numpy.zeros_like(plane) for plane in result]
            if kipcc.functions[name].result.samples == 4 and "AC4" in name and "P3" not in name:
                alpha = source[0] if source[0].dtype == expected[0].dtype else numpy.iinfo(expected[0].dtype).max
                expected[0][..., 3] = alpha[..., 3] if alpha is source[0] else alpha
        wanted = c_call(name, source, expected, size, options)
        if result is None:
            assert status == wanted < 0
            continue
        assert status == (wanted > 0) and wanted >= 0
        for plane, other in zip(result, expected, strict=True):
            numpy.testing.assert_array_equal(plane, other)


@pytest.mark.parametrize("name", [n for n in PROTOTYPES if n.endswith("R")])
def test_views(name):
    function, options, size = kipcc.functions[name], options_of(name), (36, 12)
    source = source_of(name, size)
    if function.source is None:
        view = spread(source)
        before = [around(v) for v in view]
        _, expected = call(name, source, **options)
        result = getattr(kipcc, name)(argument(view), **options)
    else:
        _, expected = call(name, source, **options)
        positive_steps = function.group in ("gamma", "twist", "hue") or re.search(STEPS_CHECKED, name)
        view = spread(expected)
        before = [around(v) for v in view]
        source_view = spread(source, upside_down=not positive_steps)
        result = getattr(kipcc, name)(argument(source_view), out=argument(view), **options)
        assert (result is view[0]) if len(view) == 1 else all(a is b for a, b in zip(result, view, strict=True))
    for plane, other, surroundings in zip(view, expected, before, strict=True):
        numpy.testing.assert_array_equal(plane, other)
        numpy.testing.assert_array_equal(around(plane), surroundings)


def refusals():
    rgb = numpy.zeros((8, 8, 3), "u1")
    f = kipcc.kipiRGBToYCbCr_8u_C3R
    planes = kipcc.kipiRGBToYCbCr420_8u_C3P3R
    frozen = numpy.zeros((8, 8, 3), "u1")
    frozen.flags.writeable = False
    chroma = numpy.zeros((4, 4), "u1")
    tall = numpy.zeros((12, 8, 3), "u1")
    yield "uint8", lambda out: f(rgb.astype("f4"), out=out)
    yield "uint8", lambda out: f(rgb.astype(">u2"), out=out)
    yield "shape", lambda out: f(rgb[0], out=out)
    yield "shape", lambda out: f(numpy.zeros((8, 8, 4), "u1"), out=out)
    yield "contiguous", lambda out: f(rgb[:, :, ::-1], out=out)
    yield "contiguous", lambda out: f(rgb[:, ::2], out=out[:, :4])
    yield "contiguous", lambda out: f(rgb[:, :4], out=out[:, ::2])
    yield "8 rows of 4", lambda out: f(rgb[:, :4], out=out)
    yield "read-only", lambda out: f(rgb, out=frozen)
    yield "shares memory", lambda out: f(tall[:8], out=tall[4:])
    yield "3 planes", lambda out: planes(rgb, out=(out[..., 0], chroma))
    yield "share memory", lambda out: planes(rgb, out=(numpy.zeros((8, 8), "u1"), chroma, chroma))
    yield "4 rows of 4", lambda out: planes(rgb, out=(numpy.zeros((8, 8), "u1"), chroma, chroma[:3]))
    unlike = [chroma, chroma.copy(), tall.ravel()[:24].reshape(4, 6)[:, :4]]
    yield "one step", lambda out: kipcc.kipiRGBToYCbCr_8u_P3R(unlike)
    yield "3 x 4", lambda out: kipcc.kipiColorTwist32f_8u_C3R(rgb, out=out, twist=TWIST)
    roi = {"grid": 0, "srcRoi": (1, 0, 8, 8)}
    yield "within the source", lambda out: kipcc.kipiCFAToRGB_8u_C1C3R(chroma.repeat(2, 0).repeat(2, 1), out=out, **roi)
    yield "levels", lambda out: kipcc.kipiReduceBits_8u_C3R(rgb, levels=1, out=out)


@pytest.mark.parametrize("sentence, refused", refusals())
def test_refused_with_nothing_written(sentence, refused):
    out = numpy.full((8, 8, 3), 9, "u1")
    with pytest.raises(kipcc.Error, match=sentence) as caught:
        refused(out)
    assert (out == 9).all()
    again = pickle.loads(pickle.dumps(caught.value))
    assert (again.status, str(again)) == (caught.value.status, str(caught.value)) and again.status < 0


def test_wrong_calls():
    rgb = numpy.zeros((8, 8, 3), "u1")
    for wrong in (
        lambda: kipcc.kipiRGBToYCbCr_8u_C3R(),
        lambda: kipcc.kipiRGBToYCbCr_8u_C3R(rgb, rgb),
        lambda: kipcc.kipiRGBToYCbCr_8u_C3R(rgb, levels=2),
        lambda: kipcc.kipiReduceBits_8u_C3R(rgb),
        lambda: kipcc.kipiRGBToYCbCr_8u_C3R([[1, 2, 3]]),
        lambda: kipcc.kipiRGBToYCbCr_8u_P3R(None),
    ):
        with pytest.raises(TypeError):
            wrong()


def test_copies_on_request_and_other_containers():
    rgb = numpy.random.default_rng(1).integers(0, 256, (8, 16, 3), "u1")
    expected = kipcc.kipiBGRToLab_8u_C3R(numpy.ascontiguousarray(rgb[:, ::2, ::-1]))
    numpy.testing.assert_array_equal(kipcc.kipiBGRToLab_8u_C3R(rgb[:, ::2, ::-1], copy=True), expected)

    class Tensor:  # of a library that exchanges by DLPack only
        def __dlpack__(self, **options):
            return rgb.__dlpack__(**options)

        def __dlpack_device__(self):
            return rgb.__dlpack_device__()

    expected = kipcc.kipiRGBToGray_8u_C3C1R(rgb)
    for container in (Tensor(), memoryview(rgb)):
        numpy.testing.assert_array_equal(kipcc.kipiRGBToGray_8u_C3C1R(container), expected)
    room = bytearray(8 * 16)
    kipcc.kipiRGBToGray_8u_C3C1R(rgb, out=memoryview(room).cast("B", (8, 16)))
    assert bytes(room) == expected.tobytes()


def test_a_region_of_a_mosaic_is_that_of_the_whole():
    mosaic = numpy.random.default_rng(2).integers(0, 65536, (40, 50), "u2")
    for function in (kipcc.kipiCFAToRGB_16u_C1C3R, kipcc.kipiDemosaicAHD_16u_C1C3R):
        whole = function(mosaic, grid=kipcc.kipiBayerRGGB)
        part = function(mosaic, grid=kipcc.kipiBayerRGGB, srcRoi=(5, 8, 30, 20))
        numpy.testing.assert_array_equal(part, whole[8:28, 5:35])


def test_many_python_threads_at_once():
    rgb = numpy.random.default_rng(3).integers(0, 256, (200, 300, 3), "u1")
    expected = kipcc.kipiBGRToLab_8u_C3R(rgb)
    results = [numpy.zeros_like(rgb) for _ in range(8)]
    threads = [threading.Thread(target=kipcc.kipiBGRToLab_8u_C3R, args=(rgb,), kwargs={"out": r}) for r in results]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert all((result == expected).all() for result in results)
