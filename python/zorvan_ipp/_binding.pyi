from typing import Any, Literal, Optional, Tuple, Union

import numpy
from numpy.typing import DTypeLike, NDArray

from ._types import ConnectionInfo, MeanStdDev, MinMaxIndex

_Array = NDArray[Any]
_Mask = Union[NDArray[numpy.uint8], NDArray[numpy.bool_]]
_Number = Union[int, float]
_Place = Tuple[int, int]
_Region = Tuple[int, int, int, int]
_Size = Tuple[int, int]

def empty(shape: _Size, dtype: Optional[DTypeLike] = None) -> _Array: ...
def copy(
    src: _Array,
    out: Optional[_Array] = None,
    region: Optional[_Region] = None,
    mask: Optional[_Mask] = None,
    copy: bool = False,
) -> _Array: ...
def fill(
    image: _Array, value: _Number, region: Optional[_Region] = None, mask: Optional[_Mask] = None, copy: bool = False
) -> _Array: ...
def convert(
    src: _Array, dtype: DTypeLike, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False
) -> _Array: ...
def add(
    a: _Array, b: _Array, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False
) -> _Array: ...
def subtract(
    a: _Array, b: _Array, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False
) -> _Array: ...
def multiply(
    a: _Array, b: _Array, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False
) -> _Array: ...
def divide(
    a: _Array, b: _Array, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False
) -> _Array: ...
def add_constant(
    image: _Array, value: _Number, region: Optional[_Region] = None, mask: Optional[_Mask] = None, copy: bool = False
) -> _Array: ...
def accumulate(
    src: _Array, accumulator: _Array, mask: _Mask, region: Optional[_Region] = None, copy: bool = False
) -> _Array: ...
def absolute(
    src: _Array, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False
) -> _Array: ...
def square(src: _Array, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False) -> _Array: ...
def square_root(
    src: _Array, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False
) -> _Array: ...
def bitwise_and(
    a: _Array, b: _Array, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False
) -> _Array: ...
def bitwise_or(
    a: _Array, b: _Array, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False
) -> _Array: ...
def bitwise_xor(
    a: _Array, b: _Array, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False
) -> _Array: ...
def invert(src: _Array, out: Optional[_Array] = None, region: Optional[_Region] = None, copy: bool = False) -> _Array: ...
def compare(
    src: _Array,
    comparison: Literal["<", "<=", "==", ">=", ">"],
    value: _Number,
    out: Optional[_Array] = None,
    region: Optional[_Region] = None,
    copy: bool = False,
) -> _Array: ...
def minimum(src: _Array, region: Optional[_Region] = None, copy: bool = False) -> _Number: ...
def maximum(src: _Array, region: Optional[_Region] = None, copy: bool = False) -> _Number: ...
def mean(
    src: _Array, region: Optional[_Region] = None, mask: Optional[_Mask] = None, copy: bool = False
) -> _Number: ...
def mean_std_dev(src: _Array, mask: _Mask, region: Optional[_Region] = None, copy: bool = False) -> MeanStdDev: ...
def min_max_index(src: _Array, mask: _Mask, region: Optional[_Region] = None, copy: bool = False) -> MinMaxIndex: ...
def erode(
    src: _Array,
    size: _Size = (3, 3),
    out: Optional[_Array] = None,
    region: Optional[_Region] = None,
    copy: bool = False,
) -> _Array: ...
def dilate(
    src: _Array,
    size: _Size = (3, 3),
    out: Optional[_Array] = None,
    region: Optional[_Region] = None,
    copy: bool = False,
) -> _Array: ...
def open(
    src: _Array,
    size: _Size = (3, 3),
    out: Optional[_Array] = None,
    region: Optional[_Region] = None,
    copy: bool = False,
) -> _Array: ...
def close(
    src: _Array,
    size: _Size = (3, 3),
    out: Optional[_Array] = None,
    region: Optional[_Region] = None,
    copy: bool = False,
) -> _Array: ...
def laplace(
    src: _Array,
    size: Literal[3, 5] = 3,
    border: Literal["replicate", "constant"] = "replicate",
    value: _Number = 0,
    out: Optional[_Array] = None,
    region: Optional[_Region] = None,
    copy: bool = False,
) -> _Array: ...
def flood_fill(
    image: _Array, seed: _Place, value: _Number, region: Optional[_Region] = None, copy: bool = False
) -> ConnectionInfo: ...
