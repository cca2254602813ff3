"""Writes the type stub of kipcc._native, from the built module: stubs.py OUTPUT."""

import inspect
import sys

import kipcc
from kipcc import _native

HEAD = """from collections.abc import Sequence
from typing import Any

import numpy
from numpy.typing import ArrayLike, NDArray

Picture = Any  # an array, or something with the buffer protocol or DLPack
Planes = Sequence[Picture]

"""
TYPES = {
    "copy": "bool", "aval": "int", "coeffs": "ArrayLike | None", "twist": "ArrayLike", "vMin": "float", "vMax": "float",
    "noise": "int", "dtype": "int", "levels": "int", "grid": "int", "srcRoi": "tuple[int, int, int, int] | None",
    "source_format": "str", "result_format": "str", "size": "tuple[int, int] | None", "matrix": "str | None",
    "range": "str | None", "site": "str | None", "to_matrix": "str | None", "to_range": "str | None",
    "to_site": "str | None", "dither": "str | None", "chroma": "str", "demosaic": "str", "threads": "int",
    "count": "int", "name": "str", "format": "str",
}  # fmt: skip
RESULTS = {
    "convert": "Any", "ownGetNumThreads": "int", "kipSetNumThreads": "None", "version": "str", "format_name": "str",
    "planes_of": "list[tuple[tuple[int, ...], numpy.dtype]]", "formats": "list[tuple]", "functions": "dict[str, tuple]",
}  # fmt: skip


def result_type(side):
    one = f"NDArray[numpy.{side.dtype}]"
    return one if side.planes == 1 else f"tuple[{', '.join([one] * side.planes)}]"


def picture_type(side):
    return "Picture" if side.planes == 1 else "Planes"


def stub(name):
    function = kipcc.functions.get(name)
    types = dict(TYPES)
    if function:
        types.update(
            source=picture_type(function.source or function.result),
            image=picture_type(function.result),
            out=f"{picture_type(function.result)} | None",
        )
    parameters = [
        p.replace(annotation=types.get(p.name, "Any"))
        for p in inspect.signature(getattr(_native, name)).parameters.values()
    ]
    text = str(inspect.Signature(parameters)).replace("'", "")
    defaults = {p.default for p in parameters if isinstance(p.default, str)}
    for default in defaults:
        text = text.replace(f"= {default}", f'= "{default}"')
    return f"def {name}{text} -> {result_type(function.result) if function else RESULTS[name]}: ...\n"


names = [name for name, value in vars(_native).items() if inspect.isbuiltin(value)]
with open(sys.argv[1], "w", encoding="utf-8") as file:
    file.write(HEAD)
    file.writelines(stub(name) for name in names)
