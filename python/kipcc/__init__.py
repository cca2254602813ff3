"""Exact and fast colour conversion for images.

>>> import kipcc, numpy
>>> frame = numpy.full((1080 * 3 // 2, 1920), 128, numpy.uint8)
>>> rgb = kipcc.convert(frame, "nv12", "rgb24", matrix="bt709", range="limited")
>>> rgb.shape
(1080, 1920, 3)

`convert` takes pictures of any format to any other: `formats` has their names. The functions of kipcc.h are here by
their C names: they take arrays, or tuples of planes, and return new ones, or write into those that `out` gives. Rows
may lie any number of bytes apart, so that regions are views; the pixels of a row must be contiguous. `functions` has
a row for each, and `manual.PAGES` the pages of the manual.

`kipcc.dask.map` does the same to Dask arrays, and the command kipcc-batch to folders of files.
"""

from collections import namedtuple

from . import manual
from ._errors import ConversionWarning, Error
from .names import *
from . import _native
from ._native import *
from ._native import convert, kipSetNumThreads, ownGetNumThreads, planes_of, version

Format = namedtuple(
    "Format", "name other_names order family planes has_alpha source_only columns_per_chroma rows_per_chroma"
)
Format.__doc__ = "A format of convert."
Side = namedtuple("Side", "dtype planes samples columns_per_chroma rows_per_chroma")
Side.__doc__ = "The pictures on one side of a function; `samples` are those of a pixel of the first plane."
Function = namedtuple("Function", "name group source_space result_space source result")
Function.__doc__ = "A function of kipcc.h. `source` is None where it works in place."

formats = {row[0]: Format(*row) for row in _native.formats()}
functions = {
    name: Function(name, *row[:3], *(side and Side(*side) for side in row[3:]))
    for name, row in _native.functions().items()
}


def format_of(name):
    """The row of `formats` for any of a format's names, in upper or lower case: "NV12", "I420", "YUY2"."""
    return formats[_native.format_name(name)]
