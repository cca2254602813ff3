"""Pictures that are not numpy arrays."""

import numpy

_CPU = 1  # DLPack's number for the processor's memory


def as_array(picture):
    """The array that a picture is, without a copy: DLPack, then the buffer protocol."""
    if hasattr(picture, "__dlpack__"):
        device, _ = picture.__dlpack_device__()
        if device != _CPU:
            raise TypeError(f"the picture lies on a device (DLPack's number {device}), not in the processor's memory")
        return numpy.from_dlpack(picture)
    try:
        return numpy.asarray(memoryview(picture))
    except TypeError:
        raise TypeError(
            "a picture is an array, or something with the buffer protocol or DLPack, or a tuple of planes, "
            f"and not {type(picture).__name__}"
        ) from None
