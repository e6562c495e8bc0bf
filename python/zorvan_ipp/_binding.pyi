from typing import Any, Literal, Optional, Tuple, Union

import numpy
from numpy.typing import DTypeLike, NDArray

from ._types import ConnectionInfo, MeanStdDev, MinMaxIndex

Array = NDArray[Any]
Mask = Union[NDArray[numpy.uint8], NDArray[numpy.bool_]]
Number = Union[int, float]
Place = Tuple[int, int]
Region = Tuple[int, int, int, int]
Size = Tuple[int, int]

def empty(shape: Size, dtype: Optional[DTypeLike] = None) -> Array: ...
def copy(
    src: Array,
    out: Optional[Array] = None,
    region: Optional[Region] = None,
    mask: Optional[Mask] = None,
    copy: bool = False,
) -> Array: ...
def fill(
    image: Array, value: Number, region: Optional[Region] = None, mask: Optional[Mask] = None, copy: bool = False
) -> Array: ...
def convert(
    src: Array, dtype: DTypeLike, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False
) -> Array: ...
def add(
    a: Array, b: Array, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False
) -> Array: ...
def subtract(
    a: Array, b: Array, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False
) -> Array: ...
def multiply(
    a: Array, b: Array, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False
) -> Array: ...
def divide(
    a: Array, b: Array, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False
) -> Array: ...
def add_constant(
    image: Array, value: Number, region: Optional[Region] = None, mask: Optional[Mask] = None, copy: bool = False
) -> Array: ...
def accumulate(
    src: Array, accumulator: Array, mask: Mask, region: Optional[Region] = None, copy: bool = False
) -> Array: ...
def absolute(
    src: Array, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False
) -> Array: ...
def square(src: Array, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False) -> Array: ...
def square_root(
    src: Array, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False
) -> Array: ...
def bitwise_and(
    a: Array, b: Array, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False
) -> Array: ...
def bitwise_or(
    a: Array, b: Array, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False
) -> Array: ...
def bitwise_xor(
    a: Array, b: Array, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False
) -> Array: ...
def invert(src: Array, out: Optional[Array] = None, region: Optional[Region] = None, copy: bool = False) -> Array: ...
def compare(
    src: Array,
    comparison: Literal["<", "<=", "==", ">=", ">"],
    value: Number,
    out: Optional[Array] = None,
    region: Optional[Region] = None,
    copy: bool = False,
) -> Array: ...
def minimum(src: Array, region: Optional[Region] = None, copy: bool = False) -> Number: ...
def maximum(src: Array, region: Optional[Region] = None, copy: bool = False) -> Number: ...
def mean(
    src: Array, region: Optional[Region] = None, mask: Optional[Mask] = None, copy: bool = False
) -> Number: ...
def mean_std_dev(src: Array, mask: Mask, region: Optional[Region] = None, copy: bool = False) -> MeanStdDev: ...
def min_max_index(src: Array, mask: Mask, region: Optional[Region] = None, copy: bool = False) -> MinMaxIndex: ...
def erode(
    src: Array,
    size: Size = (3, 3),
    out: Optional[Array] = None,
    region: Optional[Region] = None,
    copy: bool = False,
) -> Array: ...
def dilate(
    src: Array,
    size: Size = (3, 3),
    out: Optional[Array] = None,
    region: Optional[Region] = None,
    copy: bool = False,
) -> Array: ...
def open(
    src: Array,
    size: Size = (3, 3),
    out: Optional[Array] = None,
    region: Optional[Region] = None,
    copy: bool = False,
) -> Array: ...
def close(
    src: Array,
    size: Size = (3, 3),
    out: Optional[Array] = None,
    region: Optional[Region] = None,
    copy: bool = False,
) -> Array: ...
def laplace(
    src: Array,
    size: Literal[3, 5] = 3,
    border: Literal["replicate", "constant"] = "replicate",
    value: Number = 0,
    out: Optional[Array] = None,
    region: Optional[Region] = None,
    copy: bool = False,
) -> Array: ...
def flood_fill(
    image: Array, seed: Place, value: Number, region: Optional[Region] = None, copy: bool = False
) -> ConnectionInfo: ...
