"""Results for chunks are equal to those for the whole picture."""

import math
from fractions import Fraction

import dask
import dask.array
import numpy as np
import pytest
from hypothesis import example, given, settings
from hypothesis import strategies as st

import zorvan_ipp as zi
from zorvan_ipp import chunked

dask.config.set(scheduler="threads")

few = settings(max_examples=25)


@st.composite
def cut(draw, least=1):
    """A shape, and the chunks of its rows and columns."""
    return tuple(
        tuple(draw(st.lists(st.integers(least, 40), min_size=1, max_size=4))) for _ in range(2)
    )


def shape_of(chunks):
    return tuple(map(sum, chunks))


def random_pixels(chunks, seed, dtype=np.uint8):
    return np.random.default_rng(seed).integers(0, 256, shape_of(chunks)).astype(dtype)


@pytest.mark.parametrize("name", ["erode", "dilate", "open", "close"])
@few
@given(
    chunks=cut(),
    seed=st.integers(0, 99),
    size=st.tuples(st.integers(1, 8), st.integers(1, 8)),
    dtype=st.sampled_from([np.uint8, np.float32]),
)
def test_morphology(name, chunks, seed, size, dtype):
    pixels = random_pixels(chunks, seed, dtype)
    found = getattr(chunked, name)(dask.array.from_array(pixels, chunks), size)
    np.testing.assert_array_equal(found.compute(), getattr(zi, name)(pixels, size))


@few
@given(
    chunks=cut(),
    seed=st.integers(0, 99),
    size=st.sampled_from([3, 5]),
    border=st.sampled_from(["replicate", "constant"]),
    dtype=st.sampled_from([np.uint8, np.int16, np.float32]),
)
def test_laplace(chunks, seed, size, border, dtype):
    pixels = random_pixels(chunks, seed, dtype)
    if dtype == np.float32:
        pixels *= np.float32(np.pi)  # sums that are rounded
    found = chunked.laplace(dask.array.from_array(pixels, chunks), size, border, 9)
    np.testing.assert_array_equal(found.compute(), zi.laplace(pixels, size, border, 9))


@few
@given(chunks=cut(), seed=st.integers(0, 99), dtype=st.sampled_from([np.uint8, np.uint16]), share=st.floats(0, 1))
def test_mean_std_dev(chunks, seed, dtype, share):
    pixels = random_pixels(chunks, seed, dtype)
    mask = np.random.default_rng(seed).random(pixels.shape) < share
    found = chunked.mean_std_dev(dask.array.from_array(pixels, chunks), dask.array.from_array(mask)).compute()
    whole = chunked.mean_std_dev(dask.array.from_array(pixels, -1), dask.array.from_array(mask, -1)).compute()
    assert found == whole
    selected = pixels[mask].astype(np.float64)
    if selected.size:
        assert found.mean == selected.sum() / selected.size
        assert found.std_dev == pytest.approx(selected.std(), rel=1e-12, abs=1e-12)


@few
@given(seed=st.integers(0, 10**6), base=st.integers(0, 255), spread=st.integers(0, 255))
def test_sums_are_restored(seed, base, spread):
    """Rounding restores the library's sums for every mean and deviation."""
    random = np.random.default_rng(seed)
    pixels = np.clip(random.integers(base, base + spread + 1, (1500, 1500)), 0, 255).astype(np.uint8)
    mask = random.random(pixels.shape) < 0.9
    selected = pixels[mask].astype(np.int64)
    assert chunked._sums(pixels, mask) == (selected.size, selected.sum(), (selected**2).sum())


floats = st.floats(width=32, allow_nan=False, allow_infinity=False)


@few
@given(chunks=cut(), seed=st.integers(0, 99), values=st.lists(floats, min_size=1, max_size=20), share=st.floats(0, 1))
@example(chunks=((3, 4), (5,)), seed=1, values=[2.0**-149, float(np.finfo(np.float32).max)], share=1)
def test_mean_std_dev_of_floats(chunks, seed, values, share):
    """Pixels of all magnitudes, some of which cancel out."""
    random = np.random.default_rng(seed)
    pixels = random.choice(np.array(values + [-value for value in values], np.float32), shape_of(chunks))
    mask = random.random(pixels.shape) < share
    found = chunked.mean_std_dev(dask.array.from_array(pixels, chunks), dask.array.from_array(mask)).compute()
    selected = [Fraction(value) for value in pixels[mask].tolist()]
    if selected:
        mean = sum(selected) / len(selected)
        variance = sum(value**2 for value in selected) / len(selected) - mean**2
        assert found.mean == float(mean)
        assert found.std_dev == pytest.approx(math.sqrt(variance), rel=1e-14, abs=0)
    else:
        assert found == (0, 0)


def test_mean_std_dev_of_floats_is_that_of_the_whole_picture():
    pixels = np.random.default_rng(1).random((90, 70), dtype=np.float32) * 255
    mask = pixels > 30
    found = chunked.mean_std_dev(dask.array.from_array(pixels, (32, 32)), dask.array.from_array(mask)).compute()
    # the library adds some floats before each addition to a double
    assert tuple(found) == pytest.approx(tuple(zi.mean_std_dev(pixels, mask)), rel=1e-6)


@pytest.mark.parametrize("special", [np.inf, -np.inf, np.nan])
def test_mean_std_dev_of_special_floats(special):
    pixels = np.ones((20, 20), np.float32)
    pixels[3, 4] = special
    found = chunked.mean_std_dev(dask.array.from_array(pixels, (8, 8)), dask.array.from_array(pixels != 0)).compute()
    np.testing.assert_equal(found, (special, np.nan))


@few
@given(chunks=cut(), seed=st.integers(0, 99), dtype=st.sampled_from([np.uint8, np.float32]), share=st.floats(0, 1))
def test_min_max_index(chunks, seed, dtype, share):
    pixels = random_pixels(chunks, seed, dtype)
    mask = np.random.default_rng(seed).random(pixels.shape) < share
    found = chunked.min_max_index(dask.array.from_array(pixels, chunks), dask.array.from_array(mask))
    if mask.any():
        assert found.compute() == zi.min_max_index(pixels, mask)
    else:
        with pytest.raises(zi.IppError) as raised:
            found.compute()
        assert raised.value.code == 1


@few
@given(chunks=cut(), seed=st.integers(0, 99), share=st.floats(0.3, 0.8))
def test_objects(chunks, seed, share):
    """At a share of about 0.6, areas extend over many chunks."""
    pixels = random_pixels(chunks, seed)
    mask = np.random.default_rng(seed).random(pixels.shape) < share
    found = chunked.objects(dask.array.from_array(mask, chunks), dask.array.from_array(pixels)).compute()
    whole = chunked.objects(dask.array.from_array(mask, -1), dask.array.from_array(pixels, -1)).compute()
    assert found == whole
    check_objects(whole, mask, pixels)


def check_objects(found, mask, pixels):
    """Compared with areas that are grown pixel by pixel."""
    rest = mask.copy()
    for thing in found:
        stack = [tuple(np.argwhere(rest)[0])]
        rest[stack[0]] = False
        area = []
        while stack:
            row, column = stack.pop()
            area.append((row, column))
            for near in ((row - 1, column), (row + 1, column), (row, column - 1), (row, column + 1)):
                if 0 <= near[0] < mask.shape[0] and 0 <= near[1] < mask.shape[1] and rest[near]:
                    rest[near] = False
                    stack.append(near)
        rows, columns = map(np.array, zip(*area))
        values = pixels[rows, columns].astype(float)
        assert thing.area == len(area)
        assert thing.region == (rows.min(), columns.min(), np.ptp(rows) + 1, np.ptp(columns) + 1)
        assert thing.center == (rows.sum() / len(area), columns.sum() / len(area))
        assert thing.mean == values.sum() / len(area)
        assert thing.std_dev == pytest.approx(values.std(), rel=1e-12, abs=1e-12)
        assert (thing.min, thing.max) == (values.min(), values.max())
    assert not rest.any()


def test_pixel_by_pixel():
    a, b = random_pixels(((30,), (30,)), 1), random_pixels(((30,), (30,)), 2)
    found = dask.array.map_blocks(zi.add, dask.array.from_array(a, (30, 30)), dask.array.from_array(b, (30, 30)))
    np.testing.assert_array_equal(found.compute(), zi.add(a, b))


def test_types():
    words = dask.array.zeros((5, 5), dtype=np.int16)
    for function in (chunked.mean_std_dev, lambda a, m: chunked.objects(m, a)):
        with pytest.raises(TypeError, match="uint8"):
            function(words, words != 0)
