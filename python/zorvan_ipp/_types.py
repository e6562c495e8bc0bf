"""What the functions return and raise."""

from typing import NamedTuple, Optional, Tuple


class MeanStdDev(NamedTuple):
    """Mean and standard deviation of pixels."""

    mean: float
    std_dev: float


class MinMaxIndex(NamedTuple):
    """Extremes of pixels and their first positions, as (row, column) of the array."""

    min: float
    min_index: Tuple[int, int]
    max: float
    max_index: Tuple[int, int]


class ConnectionInfo(NamedTuple):
    """The result of a flood fill: the number of filled pixels, their new value, and the region around them,
    (row, column, height, width) of the array."""

    area: int
    value: float
    region: Tuple[int, int, int, int]


class _Status:
    """A status of the library. `code` and `name` are None for failures that have only a text."""

    def __init__(self, code: Optional[int], name: Optional[str], message: str):
        super().__init__(code, name, message)
        self.code = code
        self.name = name
        self.message = message

    def __str__(self) -> str:
        return self.message if self.name is None else f"{self.message} ({self.name}, {self.code})"


class IppError(_Status, ValueError):
    """The library refuses a call. Nothing has been written."""


class IppWarning(_Status, RuntimeWarning):
    """The library has written all pixels, and reports values that a division or a root cannot have."""
