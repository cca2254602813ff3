"""kipcc.dask.map: the same bytes tile by tile as all at once."""

import dask
import dask.array
import numpy
import pytest
from test_functions import PROTOTYPES, argument, options_of, planes_of, source_of

import kipcc
import kipcc.dask

pytestmark = pytest.mark.filterwarnings("ignore::kipcc.ConversionWarning")


@pytest.fixture(autouse=True)
def one_thread():
    with dask.config.set(scheduler="synchronous"):
        yield


def in_tiles(planes, chunks):
    """Dask arrays of which the first has chunks of this size and the others none."""
    return tuple(
        dask.array.from_array(p, chunks=(*chunks, *p.shape[2:]) if i == 0 else -1) for i, p in enumerate(planes)
    )


@pytest.mark.parametrize("name", PROTOTYPES)
def test_functions(name):
    size = (76, 72) if "1620" in name else (75, 71)
    source, options = source_of(name, size), options_of(name)
    if "dtype" in options:
        options.update(dtype=kipcc.kipDitherBayer, noise=0)
    expected = planes_of(getattr(kipcc, name)(argument([p.copy() for p in source]), **options))
    tiles = kipcc.dask.map(argument(in_tiles(source, (30, 40))), name, **options)
    if "ToneMap" not in name:
        assert planes_of(tiles)[0].numblocks[:2] == (3, 2)
    for plane, other in zip(dask.compute(*planes_of(tiles)), expected, strict=True):
        numpy.testing.assert_array_equal(plane, other)


def test_what_looks_at_the_whole_picture_is_one_tile():
    rgb = numpy.random.default_rng(1).integers(0, 256, (64, 64, 3), "u1")
    for options in ({"dtype": kipcc.kipDitherFS}, {"dtype": kipcc.kipDitherBayer, "noise": 30}):
        expected = kipcc.kipiReduceBits_8u_C3R(rgb, levels=3, **options)
        tiles = kipcc.dask.map(*in_tiles([rgb], (32, 32)), kipcc.kipiReduceBits_8u_C3R, levels=3, **options)
        numpy.testing.assert_array_equal(tiles.compute(), expected)


def test_refused_before_anything_is_computed():
    rgb = dask.array.zeros((64, 64, 3), "u1")
    with pytest.raises(kipcc.Error, match="float32"):
        kipcc.dask.map(rgb, kipcc.kipiRGBToGray_32f_C3C1R)
    with pytest.raises(TypeError, match="out"):
        kipcc.dask.map(rgb, kipcc.kipiRGBToGray_8u_C3C1R, out=rgb)
    with pytest.raises(ValueError, match="3 planes"):
        kipcc.dask.map(rgb, kipcc.kipiRGBToYCbCr_8u_P3R)
