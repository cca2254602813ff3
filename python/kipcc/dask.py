"""Pictures in Dask arrays, which may be larger than memory and spread over machines.

>>> import dask.array, kipcc.dask
>>> rgb = dask.array.zeros((8000, 6000, 3), dtype="uint8", chunks=(1000, 6000, 3))
>>> xyz = kipcc.dask.map(rgb, kipcc.kipiRGBToXYZ_8u_C3R)
>>> xyz.shape, xyz.numblocks
((8000, 6000, 3), (8, 1, 1))
"""

import re
import warnings

import dask
import dask.array
import numpy

import kipcc

# Tiles begin at multiples of this many rows and columns: of chroma groups, of dither patterns, and of the runs that
# some functions convert with an arithmetic of their own.
_UNIT = 16
# Functions whose pixels depend on their neighbours; none reaches further than a unit.
_NEIGHBOURS = re.compile("CFAToRGB|DemosaicAHD|_Filter_|_Interlace_|1620To420|RGBToCbYCr422")


def map(picture, what, **options):
    """Converts a picture tile by tile: the same bytes as all of it at once.

    picture: a Dask array, or a tuple of planes; formats of several planes are tuples here.
    what:    a function of kipcc.h or its name, or two formats of kipcc.convert, such as ("yuyv422", "rgb24").
    options: those of the function or of kipcc.convert, but for `out`, `copy`, `size` and `srcRoi`.

    Returns a Dask array, or a tuple of planes where the result has several. The tiles are those of the picture's first
    plane, moved to multiples of 16 rows and columns; what looks at the whole picture (tone mapping, error diffusion,
    noise) is one tile. Raises kipcc.Error at once where the options or the shapes do not fit.
    """
    unwanted = {"out", "copy", "size", "srcRoi"} & options.keys()
    if unwanted:
        raise TypeError(f"map() does not take {', '.join(sorted(unwanted))}")
    work = _Formats(*what, options) if isinstance(what, (tuple, list)) else _Function(what, options)
    return _Tiling(work, picture if isinstance(picture, (tuple, list)) else (picture,)).results()


class _Function:
    """A function of kipcc.h that takes and returns tuples of planes."""

    def __init__(self, what, options):
        self.name = what if isinstance(what, str) else what.__name__
        self.options = options
        function = kipcc.functions[self.name]
        self.in_place = function.source is None
        self.source_scales = _scales_of(function.source or function.result)
        self.result_scales = _scales_of(function.result)
        scattered = options.get("dtype", kipcc.kipDitherNone) not in (kipcc.kipDitherNone, kipcc.kipDitherBayer)
        self.whole = "ToneMap" in self.name or scattered or options.get("noise", 0) != 0
        self.border = _UNIT if _NEIGHBOURS.search(self.name) else 0

    def __call__(self, planes):
        if self.in_place:
            planes = tuple(plane.copy() for plane in planes)
        result = getattr(kipcc, self.name)(planes if len(planes) > 1 else planes[0], **self.options)
        return result if isinstance(result, tuple) else (result,)


class _Formats:
    """kipcc.convert between two formats, with tuples of planes."""

    whole = False

    def __init__(self, source, result, options):
        self.source, self.result, self.options = source, result, options
        formats = [kipcc.format_of(name) for name in (source, result)]
        self.source_scales, self.result_scales = [_scales_in(format.name) for format in formats]
        near = any(f.family == "bayer" or f.columns_per_chroma * f.rows_per_chroma > 1 for f in formats)
        self.border = _UNIT if near else 0

    def __call__(self, planes):
        height, width = planes[0].shape[:2]
        out = tuple(numpy.empty(shape, dtype) for shape, dtype in kipcc.planes_of(self.result, (width, height)))
        source, result = (p if len(p) > 1 else p[0] for p in (planes, out))
        kipcc.convert(source, self.source, self.result, out=result, **self.options)
        return out


def _scales_of(side):
    """The rows and columns of the picture that a sample of each plane serves."""
    return [(1, 1)] + [(side.rows_per_chroma, side.columns_per_chroma)] * (side.planes - 1)


def _scales_in(format):
    return [(_UNIT // shape[0], _UNIT // shape[1]) for shape, _ in kipcc.planes_of(format, (_UNIT, _UNIT))]


class _Tiling:
    """A picture and its result in tiles."""

    def __init__(self, work, planes):
        self.work = work
        self.planes = [plane.rechunk({2: -1}) if plane.ndim == 3 else plane for plane in planes]
        self.size = self.planes[0].shape[:2]
        # A small picture of zeros with the same remainders tells shapes and types, and whether all fits.
        small = [length if length < 2 * _UNIT else _UNIT + length % _UNIT for length in self.size]
        less = [length - few for length, few in zip(self.size, small)]
        if len(self.planes) != len(work.source_scales):
            raise ValueError(f"the picture has {len(work.source_scales)} planes, and not {len(self.planes)}")
        self.samples = work(
            tuple(
                numpy.zeros((p.shape[0] - less[0] // s[0], p.shape[1] - less[1] // s[1], *p.shape[2:]), p.dtype)
                for p, s in zip(self.planes, work.source_scales)
            )
        )
        self.shapes = [
            (p.shape[0] + less[0] // s[0], p.shape[1] + less[1] // s[1], *p.shape[2:])
            for p, s in zip(self.samples, work.result_scales)
        ]

    def results(self):
        rows, columns = (self._cuts(axis) for axis in (0, 1))
        tiles = [[self._tile(r, c) for c in zip(columns, columns[1:])] for r in zip(rows, rows[1:])]
        results = tuple(
            dask.array.concatenate([dask.array.concatenate([tile[i] for tile in row], axis=1) for row in tiles], axis=0)
            for i in range(len(self.samples))
        )
        return results if len(results) > 1 else results[0]

    def _cuts(self, axis):
        """Where tiles begin, and the end; none is smaller than a unit, but for a picture that is."""
        end = self.size[axis]
        if self.work.whole:
            return [0, end]
        begins = numpy.cumsum(self.planes[0].chunks[axis])[:-1] // _UNIT * _UNIT
        return [0, *sorted({int(b) for b in begins if _UNIT <= b <= end - _UNIT}), end]

    def _span(self, begin, end, axis, scale, length):
        """The part of a plane for rows or columns of the picture."""
        return slice(begin // scale, length if end == self.size[axis] else end // scale)

    def _tile(self, rows, columns):
        """The planes of the result for a rectangle of the picture."""
        border = self.work.border
        wide = [(max(0, a - border), min(end, b + border)) for (a, b), end in zip((rows, columns), self.size)]
        parts = [
            plane[tuple(self._span(*wide[axis], axis, scale[axis], plane.shape[axis]) for axis in (0, 1))]
            for plane, scale in zip(self.planes, self.work.source_scales)
        ]
        kept = []
        for shape, scale in zip(self.shapes, self.work.result_scales):
            spans = [self._span(*span, axis, scale[axis], shape[axis]) for axis, span in enumerate((rows, columns))]
            begins = [wide[axis][0] // scale[axis] for axis in (0, 1)]
            kept.append(tuple(slice(s.start - b, s.stop - b) for s, b in zip(spans, begins)))
        made = dask.delayed(_convert, nout=len(kept))(self.work, kept, *parts)
        return [
            dask.array.from_delayed(
                part, (span[0].stop - span[0].start, span[1].stop - span[1].start, *shape[2:]), sample.dtype
            )
            for part, span, shape, sample in zip(made, kept, self.shapes, self.samples)
        ]


def _convert(work, kept, *planes):
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", kipcc.ConversionWarning)  # the small picture has given it
        result = work(tuple(numpy.ascontiguousarray(plane) for plane in planes))
    return [plane[span] for plane, span in zip(result, kept)]
