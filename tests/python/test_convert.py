"""kipcc.convert: every format in every shape, against the C library called through ctypes."""

import ctypes
import gc
import os
import pathlib
import sys
import threading

import numpy
import pytest
from test_functions import around, spread

import kipcc

LIBRARY = ctypes.CDLL(str(pathlib.Path(os.environ["KIPCC_BUILD"]) / "libkipconvert.so.1"))
WRITABLE = [f.name for f in kipcc.formats.values() if not f.source_only]
BT709 = {"matrix": "bt709", "range": "limited"}


class Picture(ctypes.Structure):
    _fields_ = [(n, ctypes.c_int) for n in ("format", "width", "height", "matrix", "range", "site")]


class Planes(ctypes.Structure):
    _fields_ = [("plane", ctypes.c_void_p * 4), ("step", ctypes.c_ssize_t * 4)]


class Layout(ctypes.Structure):
    _fields_ = [("bytes", ctypes.c_size_t), ("offset", ctypes.c_size_t * 4), ("step", ctypes.c_ssize_t * 4)]


def picture_of(name, size, options):
    format = kipcc.format_of(name)
    number = list(kipcc.formats).index(format.name) + 1
    luma = format.family in ("ycbcr", "grey")
    limited = luma and "f32" not in name
    matrix, site = {"bt709": 1, "bt601": 6}[options["matrix"]], {None: 0, "topleft": 3}[options.get("site")]
    return Picture(
        number, *size, matrix if luma else 2, {"limited": 1, "full": 2}[options["range"]] if limited else 0, site
    )


def layout_of(picture):
    layout = Layout()
    assert LIBRARY.kipPictureLayout(ctypes.byref(picture), ctypes.c_size_t(1), ctypes.byref(layout)) == 0
    return layout


def c_convert(source, from_name, to_name, size, **options):
    """All bytes of a picture, without gaps, to all of the result's."""
    pictures = [picture_of(name, size, options) for name in (from_name, to_name)]
    layouts = [layout_of(p) for p in pictures]
    blocks = [numpy.ascontiguousarray(source).view("u1").ravel(), numpy.zeros(layouts[1].bytes, "u1")]
    assert blocks[0].size == layouts[0].bytes
    planes = [
        Planes((ctypes.c_void_p * 4)(*(block.ctypes.data + offset for offset in layout.offset)), layout.step)
        for block, layout in zip(blocks, layouts)
    ]
    references = [ctypes.byref(x) for pair in zip(pictures, planes) for x in pair]
    assert LIBRARY.kipConvertPicture(*references) == 0
    return blocks[1]


def block_of(planes):
    return numpy.concatenate([numpy.ascontiguousarray(p).view("u1").ravel() for p in planes])


def planes_of(result):
    return result if isinstance(result, tuple) else (result,)


def random_rgb(size, seed=1):
    return numpy.random.default_rng(seed).integers(0, 256, (size[1], size[0], 3), "u1")


@pytest.mark.parametrize("size", [(32, 16), (35, 19)])
@pytest.mark.parametrize("name", WRITABLE)
def test_every_format_as_a_result_and_as_a_source(name, size):
    rgb = random_rgb(size)
    expected = c_convert(rgb, "rgb24", name, size, **BT709)
    result = kipcc.convert(rgb, "rgb24", name, **BT709)
    numpy.testing.assert_array_equal(block_of(planes_of(result)), expected)

    planes = [numpy.zeros(shape, dtype) for shape, dtype in kipcc.planes_of(name, size)]
    views = spread(planes)
    before = [around(view) for view in views]
    assert kipcc.convert(rgb, "rgb24", name, out=tuple(views), **BT709)[0] is views[0]
    numpy.testing.assert_array_equal(block_of(views), expected)
    for view, surroundings in zip(views, before):
        numpy.testing.assert_array_equal(around(view), surroundings)

    back = c_convert(expected, name, "rgb24", size, **BT709).reshape(rgb.shape)
    upside_down = tuple(spread(views, upside_down=True))
    for source in (result, upside_down, expected, memoryview(expected.tobytes())):
        numpy.testing.assert_array_equal(kipcc.convert(source, name, "rgb24", size=size, **BT709), back)


def test_sizes_are_read_off_shapes():
    shapes = {
        "nv12": (24, 16), "i420": (24, 16), "nv16": (32, 16), "yuv444p": (3, 16, 16), "nv24": (48, 16),
        "P010": (24, 16), "yuv410p": (18, 16), "yuva420p": (40, 16), "yuyv422": (16, 16, 2), "rgb24": (16, 16, 3), "rgb565le": (16, 16),
        "gray": (16, 16), "gbrpf32le": (3, 16, 16),
    }  # fmt: skip
    rgb = random_rgb((16, 16))
    for name, shape in shapes.items():
        result = kipcc.convert(rgb, "rgb24", name, **BT709)
        assert result.shape == shape, name
        assert kipcc.convert(result, name, "rgb24", **BT709).shape == rgb.shape
    frame = numpy.zeros((36, 40), "u1")[:, 4:36]  # rows with gaps
    assert kipcc.convert(frame, "nv12", "rgb24", **BT709).shape == (24, 32, 3)


def test_colours_threads_and_options():
    rgb = random_rgb((64, 32))
    yuv = kipcc.convert(rgb, "rgb24", "yuv420p", matrix="bt601", range="full", site="topleft")
    expected = c_convert(rgb, "rgb24", "yuv420p", (64, 32), matrix="bt601", range="full", site="topleft")
    numpy.testing.assert_array_equal(yuv.ravel(), expected)
    numpy.testing.assert_array_equal(
        yuv, kipcc.convert(rgb, "rgb24", "yuv420p", matrix="bt601", range="full", site="topleft", threads=2)
    )
    moved = kipcc.convert(yuv, "yuv420p", "nv12", matrix="bt601", range="full", to_matrix="bt709", to_range="limited")
    assert not (moved[:32] == yuv[:32]).all()
    mosaic = numpy.ascontiguousarray(rgb[..., 1])
    numpy.testing.assert_array_equal(
        kipcc.convert(mosaic, "bayer_rggb8", "rgb24", demosaic="ahd"),
        kipcc.kipiDemosaicAHD_8u_C1C3R(mosaic, grid=kipcc.kipiBayerRGGB),
    )
    plain, dithered = (kipcc.convert(rgb, "rgb24", "rgb444le", dither=d) for d in (None, "ordered"))
    assert not (plain == dithered).all()


def test_many_plans_at_once():
    """More kinds of pictures than plans are kept, from several threads."""
    wrong = []

    def work(seed):
        for width in range(2, 90, 2):
            rgb = random_rgb((width, 6), seed)
            if (kipcc.convert(rgb, "rgb24", "bgr24") != rgb[..., ::-1]).any():
                wrong.append(width)

    threads = [threading.Thread(target=work, args=(seed,)) for seed in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not wrong


def refusals():
    nv12, rgb = numpy.zeros((12, 8), "u1"), numpy.zeros((8, 8, 3), "u1")
    yield "matrix", lambda out: kipcc.convert(nv12, "nv12", "rgb24", out=out)
    yield "range", lambda out: kipcc.convert(nv12, "nv12", "rgb24", matrix="bt709", out=out)
    yield "'bt709', 'bt601'", lambda out: kipcc.convert(nv12, "nv12", "rgb24", matrix="bt70", out=out)
    yield "no format 'nv99'", lambda out: kipcc.convert(nv12, "nv99", "rgb24", out=out)
    yield "uint8 is wanted, and not float32", lambda out: kipcc.convert(
        nv12.astype("f4"), "nv12", "rgb24", out=out, **BT709
    )
    yield "one above the other", lambda out: kipcc.convert(nv12[:11], "nv12", "rgb24", out=out, **BT709)
    yield "8 rows of 24", lambda out: kipcc.convert(rgb, "rgb24", "bgr24", out=out[:7])
    yield "2 planes", lambda out: kipcc.convert((nv12,), "nv12", "rgb24", out=out, **BT709)
    yield "96 bytes", lambda out: kipcc.convert(bytes(95), "nv12", "rgb24", size=(8, 8), out=out, **BT709)
    yield "size=", lambda out: kipcc.convert(bytes(96), "nv12", "rgb24", out=out, **BT709)
    yield "contiguous", lambda out: kipcc.convert(rgb[:, :, ::-1], "rgb24", "bgr24", out=out)
    yield "shares memory", lambda out: kipcc.convert(out, "rgb24", "bgr24", out=out)
    yield "read-only", lambda out: kipcc.convert(rgb, "rgb24", "rgb24", out=numpy.broadcast_to(out, out.shape))
    yield "converted from, but not to", lambda out: kipcc.convert(rgb, "rgb24", "bayer_rggb8")


@pytest.mark.parametrize("sentence, refused", refusals())
def test_refused_with_nothing_written(sentence, refused):
    out = numpy.full((8, 8, 3), 9, "u1")
    with pytest.raises(kipcc.Error, match=sentence) as caught:
        refused(out)
    assert (out == 9).all() and caught.value.function == "convert" and caught.value.status < 0


def test_sources_are_released():
    rgb = random_rgb((16, 16))
    before = len(gc.get_objects())
    for _ in range(50):
        kipcc.convert(rgb, "rgb24", "yuv420p", **BT709)
        with pytest.raises(kipcc.Error):
            kipcc.convert(rgb, "rgb24", "nv12")
    assert sys.getrefcount(rgb) == 2 and len(gc.get_objects()) < before + 500
