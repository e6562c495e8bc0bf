"""Arrays and regions drawn at random."""

import warnings

import numpy as np
from hypothesis import strategies as st

import zorvan_ipp as zi


class Case:
    """A region, and arrays of different shapes that contain it."""

    def __init__(self, seed, region, shapes, whole):
        self.random = np.random.default_rng(seed)
        self.region = None if whole else region
        self.shapes = shapes
        row, column, height, width = region
        self.inside = (slice(row, row + height), slice(column, column + width))
        self.height, self.width = height, width

    def array(self, index, dtype, values=None):
        """The array `index` of the call. It begins at any address."""
        shape = self.shapes[index]
        dtype = np.dtype(dtype)
        shift = int(self.random.integers(0, 8))
        memory = bytearray(shape[0] * shape[1] * dtype.itemsize + shift)
        array = np.frombuffer(memory, dtype, offset=shift, count=shape[0] * shape[1]).reshape(shape)
        array[...] = self.pixels(shape, dtype) if values is None else self.random.choice(values, shape)
        return array

    def pixels(self, shape, dtype):
        if dtype == np.bool_:
            return self.random.random(shape) < self.random.random()
        if dtype.kind == "f":
            scale = self.random.choice([1.0, 300.0, 1e6])
            return (self.random.random(shape) - 0.5) * scale
        limits = np.iinfo(dtype)
        few = self.random.integers(limits.min, limits.max, 3, endpoint=True)
        if self.random.random() < 0.3:
            return self.random.choice(few, shape)
        return self.random.integers(limits.min, limits.max, shape, endpoint=True)

    def mask(self, index):
        if self.random.random() < 0.5:
            return self.array(index, np.bool_)
        return self.array(index, np.uint8, values=[0, 0, 1, 128, 255])



@st.composite
def cases(draw, arrays):
    extent = st.one_of(st.integers(1, 8), st.integers(1, 70))
    margin = st.integers(0, 5)
    whole = draw(st.booleans())
    height, width = draw(extent), draw(extent)
    row, column = (0, 0) if whole else (draw(margin), draw(margin))
    shapes = []
    for index in range(arrays):
        below, beside = (0, 0) if whole and index == 0 else (draw(margin), draw(margin))
        shapes.append((row + height + below, column + width + beside))
    return Case(draw(st.integers(0, 2**32 - 1)), (row, column, height, width), shapes, whole)


def quietly(function, *arguments, **keywords):
    """The call without its warnings about zeros and negative roots."""
    with warnings.catch_warnings(), np.errstate(all="ignore"):
        warnings.simplefilter("ignore", zi.IppWarning)
        return function(*arguments, **keywords)


def check_written(function, definition, case, sources, out, equal=np.testing.assert_array_equal):
    """`function(*sources, out=, region=)` writes the result of `definition` for the region, and nothing else."""
    before = [source.copy() for source in sources]
    expected = out.copy()
    wanted = quietly(definition, *[source[case.inside] for source in sources])
    expected[case.inside] = wanted

    result = quietly(function, *sources, out=out, region=case.region)
    assert result is out
    equal(out[case.inside], wanted)
    out[case.inside] = wanted
    assert_same_bits(out, expected)
    for source, was in zip(sources, before):
        assert_same_bits(source, was)

    new = quietly(function, *sources, region=case.region)
    assert new.shape == (case.height, case.width) and new.dtype == out.dtype
    equal(new, wanted)


def assert_same_bits(a, b):
    assert a.tobytes() == b.tobytes()
