"""A camera raw file for tests: DNG, which is TIFF, with a Bayer pattern of RGGB and 12 bits in 16."""

import struct

import numpy

BYTE, TEXT, SHORT, LONG, RATIO, SIGNED_RATIO = 1, 2, 3, 4, 5, 10
CODES = {BYTE: "B", SHORT: "H", LONG: "I"}
CAMERA_FROM_XYZ = [0.62, -0.13, -0.05, -0.42, 1.25, 0.18, -0.09, 0.20, 0.58]


def _entry(tag, kind, values):
    if kind == TEXT:
        return tag, kind, len(values) + 1, values.encode() + b"\0"
    if kind in (RATIO, SIGNED_RATIO):
        return tag, kind, len(values), b"".join(struct.pack("<ii", round(v * 1000000), 1000000) for v in values)
    return tag, kind, len(values), struct.pack(f"<{len(values)}{CODES[kind]}", *values)


def write(path, mosaic):
    """Writes samples, uint16 of shape (height, width)."""
    height, width = mosaic.shape
    offset = 4096
    entries = [
        _entry(254, LONG, [0]),
        _entry(256, LONG, [width]),
        _entry(257, LONG, [height]),
        _entry(258, SHORT, [16]),
        _entry(259, SHORT, [1]),
        _entry(262, SHORT, [32803]),  # a colour filter array
        _entry(271, TEXT, "Test"),
        _entry(272, TEXT, "Camera"),
        _entry(273, LONG, [offset]),
        _entry(274, SHORT, [1]),
        _entry(277, SHORT, [1]),
        _entry(278, LONG, [height]),
        _entry(279, LONG, [height * width * 2]),
        _entry(284, SHORT, [1]),
        _entry(33421, SHORT, [2, 2]),
        _entry(33422, BYTE, [0, 1, 1, 2]),
        _entry(50706, BYTE, [1, 4, 0, 0]),
        _entry(50708, TEXT, "Test Camera"),
        _entry(50714, SHORT, [64]),
        _entry(50717, LONG, [4095]),
        _entry(50721, SIGNED_RATIO, CAMERA_FROM_XYZ),
        _entry(50728, RATIO, [0.6, 1.0, 0.7]),
        _entry(50778, SHORT, [21]),
    ]
    head, tail = struct.pack("<2sHIH", b"II", 42, 8, len(entries)), b""
    place = len(head) + 12 * len(entries) + 4
    for tag, kind, count, data in entries:
        if len(data) > 4:
            value = struct.pack("<I", place + len(tail))
            tail += data + b"\0" * (len(data) % 2)
        else:
            value = data.ljust(4, b"\0")
        head += struct.pack("<HHI", tag, kind, count) + value
    with open(path, "wb") as file:
        file.write((head + b"\0" * 4 + tail).ljust(offset, b"\0") + mosaic.astype("<u2").tobytes())


def random_mosaic(seed, height=64, width=96):
    return numpy.random.default_rng(seed).integers(64, 4096, (height, width)).astype("u2")
