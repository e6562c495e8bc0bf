"""The operations on dask arrays: pictures in chunks, in several threads, processes or machines.

For operations on single pixels use dask.array.map_blocks: map_blocks(zorvan_ipp.add, a, b). This module has the other
operations: neighbourhoods that extend into the next chunk, reductions whose parts combine exactly, and objects that
extend over several chunks. Results are the same for every chunking, and lazy: compute() them.

Needs Debian's python3-dask, and python3-distributed for clusters.
"""

import math
from fractions import Fraction
from typing import List, NamedTuple, Optional, Tuple, Union

import dask
import dask.array
import numpy

import zorvan_ipp

__all__ = ["Object", "close", "dilate", "erode", "laplace", "mean_std_dev", "min_max_index", "objects", "open"]

# --- neighbourhoods: each chunk is computed with a margin as wide as the neighbourhood, which is removed again. At
# the edge of the picture there is no margin, so the operation uses the same border as for the whole picture.


def _with_margin(function, array, reach, *arguments):
    def on_chunk(chunk):
        return function(numpy.ascontiguousarray(chunk), *arguments)

    depth = {axis: min(pixels, array.shape[axis]) for axis, pixels in enumerate(reach)}
    return dask.array.map_overlap(on_chunk, array, depth=depth, boundary="none", dtype=array.dtype)


def erode(array: dask.array.Array, size: Tuple[int, int] = (3, 3)) -> dask.array.Array:
    """zorvan_ipp.erode of the whole picture."""
    return _with_margin(zorvan_ipp.erode, array, [extent // 2 for extent in size], size)


def dilate(array: dask.array.Array, size: Tuple[int, int] = (3, 3)) -> dask.array.Array:
    """zorvan_ipp.dilate of the whole picture."""
    return _with_margin(zorvan_ipp.dilate, array, [extent // 2 for extent in size], size)


def open(array: dask.array.Array, size: Tuple[int, int] = (3, 3)) -> dask.array.Array:
    """zorvan_ipp.open of the whole picture."""
    return _with_margin(zorvan_ipp.open, array, [extent - 1 for extent in size], size)  # two operations


def close(array: dask.array.Array, size: Tuple[int, int] = (3, 3)) -> dask.array.Array:
    """zorvan_ipp.close of the whole picture."""
    return _with_margin(zorvan_ipp.close, array, [extent - 1 for extent in size], size)


def laplace(array: dask.array.Array, size: int = 3, border: str = "replicate", value: float = 0) -> dask.array.Array:
    """zorvan_ipp.laplace of the whole picture."""
    return _with_margin(zorvan_ipp.laplace, array, [size // 2, size // 2], size, border, value)


# --- reductions


_LEAST_EXPONENT = -148  # of numpy.frexp for the smallest float32


class _Sums(NamedTuple):
    """Exact numbers, so that the sums do not depend on the order: integers, or fractions for floats."""

    count: int
    total: Union[int, Fraction, float]  # a float if a pixel is infinite or NaN
    squares: Union[int, Fraction, float]

    def __add__(self, other):
        return _Sums(*map(sum, zip(self, other)))

    def result(self):
        if self.count == 0:
            return zorvan_ipp.MeanStdDev(0.0, 0.0)
        variance = self.count * self.squares - self.total**2  # times the square of the count
        return zorvan_ipp.MeanStdDev(float(self.total / self.count), math.sqrt(variance) / self.count)


def _float_sums(pixels):
    """The exact sum and sum of squares of float32."""
    if not numpy.isfinite(pixels).all():
        total = float(pixels.sum(dtype=numpy.float64))
        return total, total**2
    fractions, exponents = numpy.frexp(pixels)
    whole = (fractions * 2.0**24).astype(numpy.int64)  # each pixel is a whole number times 2**(exponent - 24)
    places = exponents - _LEAST_EXPONENT
    high, low = whole >> 12, whole & 4095  # the square of a whole number would have too many digits for a float64

    def total(values, scale):
        # Sums of numbers below 2**25 are exact in float64 for chunks of 2**28 pixels.
        by_place = numpy.bincount(places, weights=values)
        return sum(int(by_place[place]) << (scale * int(place)) for place in numpy.flatnonzero(by_place))

    squares = (total(high**2, 2) << 24) + (total(2 * high * low, 2) << 12) + total(low**2, 2)
    unit = 2 ** (24 - _LEAST_EXPONENT)
    return Fraction(total(whole, 1), unit), Fraction(squares, unit**2)


def _sums(pixels, mask):
    count = int(numpy.count_nonzero(mask))
    if pixels.dtype == numpy.uint8:
        # The library computes both from exact sums, with an error of some units in the 16th digit. The sums have at
        # most 13 digits for chunks of 2**27 pixels, so rounding restores them.
        mean, deviation = zorvan_ipp.mean_std_dev(pixels, mask)
        return _Sums(count, round(mean * count), round((mean**2 + deviation**2) * count))
    if pixels.dtype == numpy.uint16:
        numbers = numpy.bincount(pixels[mask != 0], minlength=2**16)
        values = numpy.arange(2**16, dtype=numpy.int64)
        return _Sums(count, int(numbers @ values), int(numbers @ values**2))
    return _Sums(count, *_float_sums(pixels[mask != 0]))


def _chunks(*arrays):
    """The chunks of arrays of one shape, with the same chunking: (row, column) of each first pixel, and the chunks."""
    first = arrays[0]
    others = [array.rechunk(first.chunks) for array in arrays[1:]]
    rows = numpy.cumsum([0, *first.chunks[0]])[:-1]
    columns = numpy.cumsum([0, *first.chunks[1]])[:-1]
    delayed = [array.to_delayed() for array in (first, *others)]
    for i, row in enumerate(rows):
        for j, column in enumerate(columns):
            yield (int(row), int(column)), [chunks[i, j] for chunks in delayed]


@dask.delayed
def _chunk_sums(pixels, mask):
    return _sums(numpy.ascontiguousarray(pixels), numpy.ascontiguousarray(mask))


@dask.delayed
def _add_sums(parts):
    return sum(parts[1:], parts[0]).result()


def mean_std_dev(array: dask.array.Array, mask: dask.array.Array):
    """zorvan_ipp.mean_std_dev of the whole picture, from exact sums. uint8, uint16 as words, and float32."""
    if array.dtype not in (numpy.uint8, numpy.uint16, numpy.float32):
        raise TypeError(f"mean_std_dev takes uint8, uint16 and float32, not {array.dtype}")
    return _add_sums([_chunk_sums(*chunk) for _, chunk in _chunks(array, mask)])


@dask.delayed
def _chunk_extremes(origin, pixels, mask):
    if not numpy.any(mask):
        return []
    low, low_place, high, high_place = zorvan_ipp.min_max_index(
        numpy.ascontiguousarray(pixels), numpy.ascontiguousarray(mask)
    )
    (row, column), (r, c), (y, x) = origin, low_place, high_place
    return [((low, row + r, column + c), (-high, row + y, column + x))]


@dask.delayed
def _merge_extremes(parts):
    found = sum(parts, [])
    if not found:
        raise zorvan_ipp.IppError(1, "ippStsNoOperation", "No operation has been executed")
    # The first position in row order is the smallest pair of row and column.
    low, *low_place = min(lowest for lowest, _ in found)
    high, *high_place = min(highest for _, highest in found)
    return zorvan_ipp.MinMaxIndex(low, tuple(low_place), -high, tuple(high_place))


def min_max_index(array: dask.array.Array, mask: dask.array.Array):
    """zorvan_ipp.min_max_index of the whole picture."""
    return _merge_extremes([_chunk_extremes(origin, *chunk) for origin, chunk in _chunks(array, mask)])


# --- objects


class Object(NamedTuple):
    """Connected pixels of a mask: their number, the region around them, their mean position, and mean, standard
    deviation and extremes of the picture's pixels there."""

    area: int
    region: Tuple[int, int, int, int]
    center: Tuple[float, float]
    mean: float
    std_dev: float
    min: int
    max: int


class _Part(NamedTuple):
    """The pixels of an object in one chunk, or in several. Rows and columns are those of the picture."""

    first: Tuple[int, int]  # in row order
    box: Tuple[int, int, int, int]  # top, left, and the row and column after the last
    rows: int
    columns: int
    sums: _Sums
    min: int
    max: int

    def __add__(self, other):
        (top, left, bottom, right), (top2, left2, bottom2, right2) = self.box, other.box
        return _Part(
            min(self.first, other.first),
            (min(top, top2), min(left, left2), max(bottom, bottom2), max(right, right2)),
            self.rows + other.rows,
            self.columns + other.columns,
            self.sums + other.sums,
            min(self.min, other.min),
            max(self.max, other.max),
        )

    def result(self):
        top, left, bottom, right = self.box
        count = self.sums.count
        return Object(
            count,
            (top, left, bottom - top, right - left),
            (self.rows / count, self.columns / count),
            *self.sums.result(),
            self.min,
            self.max,
        )


class _Labelled(NamedTuple):
    """The parts of a chunk, part n with label n + 1, and the labels along its four edges."""

    origin: Tuple[int, int]
    parts: List[_Part]
    top: numpy.ndarray
    bottom: numpy.ndarray
    left: numpy.ndarray
    right: numpy.ndarray


def _measure(origin, labels, number, info, first, picture):
    row, column, height, width = info.region
    own = labels[row : row + height, column : column + width] == number
    pixels = zorvan_ipp.copy(picture, region=info.region)
    extremes = zorvan_ipp.min_max_index(pixels, own)
    top, left = origin[0] + row, origin[1] + column
    return _Part(
        (origin[0] + int(first[0]), origin[1] + int(first[1])),
        (top, left, top + height, left + width),
        int(own.sum(axis=1) @ numpy.arange(top, top + height)),
        int(own.sum(axis=0) @ numpy.arange(left, left + width)),
        _sums(pixels, own),
        extremes.min,
        extremes.max,
    )


@dask.delayed
def _label(origin, mask, picture):
    """Fills each object of the chunk with its own number."""
    picture = numpy.ascontiguousarray(picture)
    selected = numpy.ascontiguousarray(mask) != 0
    labels = numpy.zeros(selected.shape, numpy.int32)
    zorvan_ipp.fill(labels, -1, mask=selected)
    # The pixels above and to the left of an object's first pixel are not selected.
    starts = selected.copy()
    starts[1:] &= ~selected[:-1]
    starts[:, 1:] &= ~selected[:, :-1]
    parts: List[_Part] = []
    for row, column in numpy.argwhere(starts):
        if labels[row, column] == -1:
            number = len(parts) + 1
            info = zorvan_ipp.flood_fill(labels, (row, column), number)
            parts.append(_measure(origin, labels, number, info, (row, column), picture))
    edges = [edge.copy() for edge in (labels[0], labels[-1], labels[:, 0], labels[:, -1])]
    return _Labelled(origin, parts, *edges)


def _seams(chunks):
    """The common edges of chunks: (chunk, its labels, next chunk, its labels)."""
    by_origin = {chunk.origin: chunk for chunk in chunks}
    for chunk in chunks:
        row, column = chunk.origin
        below = by_origin.get((row + len(chunk.left), column))
        beside = by_origin.get((row, column + len(chunk.top)))
        if below:
            yield chunk, chunk.bottom, below, below.top
        if beside:
            yield chunk, chunk.right, beside, beside.left


@dask.delayed
def _merge_objects(chunks):
    """Joins the parts that touch along a seam."""
    parent = {}

    def root(part):
        while part in parent:
            part = parent[part]
        return part

    for chunk, labels, other, other_labels in _seams(chunks):
        touching = (labels != 0) & (other_labels != 0)
        for pair in set(zip(labels[touching].tolist(), other_labels[touching].tolist())):
            a, b = root((chunk.origin, pair[0])), root((other.origin, pair[1]))
            if a != b:
                parent[max(a, b)] = min(a, b)

    whole = {}
    for chunk in chunks:
        for number, part in enumerate(chunk.parts, start=1):
            key = root((chunk.origin, number))
            whole[key] = whole[key] + part if key in whole else part
    return [part.result() for part in sorted(whole.values())]


def objects(mask: dask.array.Array, picture: Optional[dask.array.Array] = None):
    """A list of Object: the areas of `mask` connected by the four sides of pixels, in the order of their first
    pixels. They are measured in `picture`, of uint8, or in the mask if there is no picture."""
    if picture is None:
        picture = (mask != 0).astype(numpy.uint8)
    if picture.dtype != numpy.uint8:
        raise TypeError(f"objects are measured in uint8, not in {picture.dtype}")
    return _merge_objects([_label(origin, *chunk) for origin, chunk in _chunks(mask, picture)])
