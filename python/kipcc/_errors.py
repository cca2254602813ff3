"""How calls are refused, and what they warn of."""


class Error(ValueError):
    """A call that was refused. Nothing has been written.

    function: the name of the function that was called.
    status:   the kipcc.KipStatus that it reported, or that tells what kind of mistake was found before.
    sentence: the reason.
    """

    def __init__(self, function, status, sentence):
        super().__init__(function, status, sentence)
        from .names import KipStatus

        self.function = function
        self.status = KipStatus(status)
        self.sentence = sentence

    def __str__(self):
        return f"{self.function}: {self.sentence} ({self.status.name})"


class ConversionWarning(UserWarning):
    """The picture was converted, but not all of it: sizes that are not whole chroma groups, or nothing to do."""


for _class in (Error, ConversionWarning):
    _class.__module__ = "kipcc"  # where users find them
