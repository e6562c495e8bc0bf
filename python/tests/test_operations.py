"""Every function compared with its definition in numpy, on random shapes, regions, types and masks."""

import operator

import numpy as np
import pytest
from cases import assert_same_bits, cases, check_written, quietly
from hypothesis import given
from hypothesis import strategies as st

import zorvan_ipp as zi

ALL = [np.uint8, np.uint16, np.int16, np.int32, np.float32]


def close_floats(actual, expected):
    if actual.dtype.kind == "f":
        np.testing.assert_allclose(actual, expected, rtol=1e-6)
    else:
        np.testing.assert_array_equal(actual, expected)


# --- moving pixels


@given(case=cases(2), dtype=st.sampled_from(ALL))
def test_copy(case, dtype):
    check_written(zi.copy, lambda src: src, case, [case.array(0, dtype)], case.array(1, dtype))


@given(case=cases(3), dtype=st.sampled_from(ALL))
def test_copy_masked(case, dtype):
    src, out, mask = case.array(0, dtype), case.array(1, dtype), case.mask(2)
    selected = mask[case.inside] != 0
    expected = out.copy()
    expected[case.inside] = np.where(selected, src[case.inside], out[case.inside])
    assert zi.copy(src, out, mask=mask, region=case.region) is out
    assert_same_bits(out, expected)
    new = zi.copy(src, mask=mask, region=case.region)
    np.testing.assert_array_equal(new, np.where(selected, src[case.inside], 0))


@given(case=cases(2), dtype=st.sampled_from(ALL), masked=st.booleans())
def test_fill(case, dtype, masked):
    image, mask = case.array(0, dtype), case.mask(1)
    value = case.pixels((1,), np.dtype(dtype)).astype(dtype)[0]
    expected = image.copy()
    selected = mask[case.inside] != 0 if masked else np.True_
    expected[case.inside] = np.where(selected, value, image[case.inside])
    assert zi.fill(image, value, region=case.region, mask=mask if masked else None) is image
    assert_same_bits(image, expected)


@given(case=cases(2), dtype=st.sampled_from([np.uint8, np.float32]))
def test_convert(case, dtype):
    def definition(src):
        return np.clip(src, 0, 255) if dtype == np.uint8 else src.astype(np.float32)

    def function(src, out=None, region=None):
        return zi.convert(src, dtype, out=out, region=region)

    check_written(function, definition, case, [case.array(0, np.int32)], case.array(1, dtype))


@given(shape=st.tuples(st.integers(1, 50), st.integers(1, 50)), dtype=st.sampled_from(ALL))
def test_empty(shape, dtype):
    image = zi.empty(shape, dtype)
    assert image.shape == shape and image.dtype == dtype and image.flags.c_contiguous
    assert image.ctypes.data % 64 == 0
    image[...] = 1


# --- arithmetic


def saturated(function):
    def definition(*sources):
        if sources[0].dtype == np.uint8:
            return np.clip(function(*[source.astype(np.int64) for source in sources]), 0, 255)
        return function(*sources)

    return definition


def quotient(a, b):
    if a.dtype != np.uint8:
        return a / b
    return np.where(b == 0, np.where(a == 0, 0, 255), a / np.where(b == 0, 1, b))


def close_quotients(actual, exact):
    """A quotient of bytes halfway between two numbers may be either."""
    if actual.dtype == np.uint8:
        assert np.all(np.abs(actual - exact) <= 0.5)
    else:
        close_floats(actual, exact)


def root(src):
    return np.sqrt(src) if src.dtype != np.uint8 else np.rint(np.sqrt(src.astype(np.float64)))


BINARY = [
    (zi.add, saturated(operator.add), np.testing.assert_array_equal),
    (zi.subtract, saturated(operator.sub), np.testing.assert_array_equal),
    (zi.multiply, saturated(operator.mul), np.testing.assert_array_equal),
    (zi.divide, quotient, close_quotients),
]
UNARY = [
    (zi.square, saturated(np.square), np.testing.assert_array_equal),
    (zi.square_root, root, close_floats),
]
BITS = [
    (zi.bitwise_and, np.bitwise_and),
    (zi.bitwise_or, np.bitwise_or),
    (zi.bitwise_xor, np.bitwise_xor),
]


@pytest.mark.parametrize("function, definition, equal", BINARY)
@given(case=cases(3), dtype=st.sampled_from([np.uint8, np.float32]))
def test_arithmetic_of_two(function, definition, equal, case, dtype):
    check_written(function, definition, case, [case.array(0, dtype), case.array(1, dtype)], case.array(2, dtype), equal)


@pytest.mark.parametrize("function, definition, equal", BINARY + [(f, d, close_floats) for f, d in BITS])
@given(case=cases(2), into=st.integers(0, 1))
def test_two_in_place(function, definition, equal, case, into):
    sources = [case.array(0, np.uint8), case.array(1, np.uint8)]
    out, expected = sources[into], sources[into].copy()
    wanted = quietly(definition, *[source[case.inside] for source in sources])
    quietly(function, *sources, out=out, region=case.region)
    equal(out[case.inside], wanted)
    out[case.inside] = expected[case.inside]
    assert_same_bits(out, expected)


@pytest.mark.parametrize("function, definition, equal", UNARY)
@given(case=cases(2), dtype=st.sampled_from([np.uint8, np.float32]))
def test_arithmetic_of_one(function, definition, equal, case, dtype):
    check_written(function, definition, case, [case.array(0, dtype)], case.array(1, dtype), equal)


@given(case=cases(2))
def test_absolute(case):
    check_written(zi.absolute, np.abs, case, [case.array(0, np.float32)], case.array(1, np.float32))


@pytest.mark.parametrize(
    "function, definition, dtype",
    [(f, d, t) for f, d, e in UNARY for t in (np.uint8, np.float32)]
    + [(zi.absolute, np.abs, np.float32), (zi.invert, np.invert, np.uint8)],
)
@given(case=cases(1))
def test_one_in_place(function, definition, dtype, case):
    image = case.array(0, dtype)
    wanted = quietly(definition, image[case.inside].copy())
    expected = image.copy()
    assert quietly(function, image, out=image, region=case.region) is image
    close_floats(image[case.inside], wanted)
    expected[case.inside] = image[case.inside]
    assert_same_bits(image, expected)


@given(case=cases(2), dtype=st.sampled_from([np.uint8, np.float32]), masked=st.booleans())
def test_add_constant(case, dtype, masked):
    image, mask = case.array(0, dtype), case.mask(1)
    value = case.pixels((1,), np.dtype(dtype)).astype(dtype)[0]
    selected = mask[case.inside] != 0 if masked else np.True_
    expected = image.copy()
    sums = saturated(operator.add)(image[case.inside], np.array(value))
    expected[case.inside] = np.where(selected, sums, image[case.inside])
    assert zi.add_constant(image, value, region=case.region, mask=mask if masked else None) is image
    assert_same_bits(image, expected)


@given(case=cases(3), dtype=st.sampled_from([np.uint8, np.float32]))
def test_accumulate(case, dtype):
    src, accumulator, mask = case.array(0, dtype), case.array(1, np.float32), case.mask(2)
    expected = accumulator.copy()
    sums = accumulator[case.inside] + src[case.inside].astype(np.float32)
    expected[case.inside] = np.where(mask[case.inside] != 0, sums, accumulator[case.inside])
    assert zi.accumulate(src, accumulator, mask, region=case.region) is accumulator
    assert_same_bits(accumulator, expected)


# --- logic and comparison


@pytest.mark.parametrize("function, definition", BITS)
@given(case=cases(3))
def test_bits_of_two(function, definition, case):
    sources = [case.array(0, np.uint8), case.array(1, np.uint8)]
    check_written(function, definition, case, sources, case.array(2, np.uint8))


@given(case=cases(2))
def test_invert(case):
    check_written(zi.invert, np.invert, case, [case.array(0, np.uint8)], case.array(1, np.uint8))


@pytest.mark.parametrize("shape", [(40, 255), (63, 257), (33, 256), (3, 9000), (2, 2**21)])
def test_invert_of_long_rows(shape):
    """The library writes past the cache from 256 columns on."""
    src = np.random.default_rng(4).integers(0, 256, shape, dtype=np.uint8)
    region = (1, 0, shape[0] - 1, shape[1])
    np.testing.assert_array_equal(zi.invert(src), ~src)
    out = src.copy()
    zi.invert(src, out=out, region=region)
    np.testing.assert_array_equal(out, np.vstack([src[:1], ~src[1:]]))


def test_bits_of_floats_are_refused():
    src, out = np.ones((20, 300), np.float32), np.zeros((20, 300), np.float32)
    for call in (lambda: zi.invert(src, out), lambda: zi.bitwise_and(src, src, out)):
        with pytest.raises(zi.IppError) as raised:
            call()
        assert raised.value.code == -59 and not out.any()


@given(
    case=cases(2),
    comparison=st.sampled_from(
        [("<", operator.lt), ("<=", operator.le), ("==", operator.eq), (">=", operator.ge), (">", operator.gt)]
    ),
    value=st.integers(0, 255),
)
def test_compare(case, comparison, value):
    symbol, holds = comparison

    def function(src, out=None, region=None):
        return zi.compare(src, symbol, value, out=out, region=region)

    src = case.array(0, np.float32, values=[value - 1, value - 0.5, value, value + 0.5, value + 1, -np.inf, np.inf])
    check_written(function, lambda src: np.where(holds(src, value), 255, 0), case, [src], case.array(1, np.uint8))


# --- neighbourhoods


def window_extreme(function, src, size, before):
    (rows, columns), (up, left) = size, before
    padded = np.pad(src, ((up, rows - 1 - up), (left, columns - 1 - left)), mode="edge")
    return function(np.lib.stride_tricks.sliding_window_view(padded, size), axis=(2, 3))


def back(size):
    return tuple((extent - 1) // 2 for extent in size)


def forward(size):
    return tuple(extent // 2 for extent in size)


MORPHOLOGY = [
    (zi.erode, lambda src, size: window_extreme(np.min, src, size, back(size))),
    (zi.dilate, lambda src, size: window_extreme(np.max, src, size, back(size))),
    (
        zi.open,
        lambda src, size: window_extreme(np.max, window_extreme(np.min, src, size, back(size)), size, forward(size)),
    ),
    (
        zi.close,
        lambda src, size: window_extreme(np.min, window_extreme(np.max, src, size, back(size)), size, forward(size)),
    ),
]


@pytest.mark.parametrize("function, definition", MORPHOLOGY)
@given(
    case=cases(2),
    dtype=st.sampled_from([np.uint8, np.float32]),
    size=st.one_of(st.just((3, 3)), st.tuples(st.integers(1, 12), st.integers(1, 12))),
)
def test_morphology(function, definition, case, dtype, size):
    def sized(src, out=None, region=None):
        return function(src, size, out=out, region=region)

    check_written(sized, lambda src: definition(src, size), case, [case.array(0, dtype)], case.array(1, dtype))


KERNELS = {
    3: np.array([[-1, -1, -1], [-1, 8, -1], [-1, -1, -1]]),
    5: np.array([[-1, -3, -4, -3, -1], [-3, 0, 6, 0, -3], [-4, 6, 20, 6, -4], [-3, 0, 6, 0, -3], [-1, -3, -4, -3, -1]]),
}


@given(
    case=cases(2),
    dtype=st.sampled_from([np.uint8, np.int16, np.float32]),
    size=st.sampled_from([3, 5]),
    border=st.sampled_from(["replicate", "constant"]),
)
def test_laplace(case, dtype, size, border):
    value = case.pixels((1,), np.dtype(dtype)).astype(dtype)[0]
    how = {"mode": "edge"} if border == "replicate" else {"mode": "constant", "constant_values": value}

    def function(src, out=None, region=None):
        return zi.laplace(src, size, border, value, out=out, region=region)

    def definition(src):
        padded = np.pad(src, size // 2, **how).astype(np.float64)
        windows = np.lib.stride_tricks.sliding_window_view(padded, (size, size))
        sums = np.einsum("ijkl,kl->ij", windows, KERNELS[size])
        return sums if dtype == np.float32 else np.clip(sums, np.iinfo(dtype).min, np.iinfo(dtype).max)

    def equal(actual, expected):
        if dtype == np.float32:
            largest = max(np.abs(src).max(), abs(value))
            np.testing.assert_allclose(actual, expected, rtol=0, atol=float(largest) * 100 * 2.0**-23)
        else:
            np.testing.assert_array_equal(actual, expected)

    src = case.array(0, dtype)
    check_written(function, definition, case, [src], case.array(1, dtype), equal)


# --- reductions


@given(case=cases(1), dtype=st.sampled_from([np.uint8, np.uint16, np.float32]))
def test_extremes(case, dtype):
    src = case.array(0, dtype)
    assert zi.minimum(src, case.region) == src[case.inside].min()
    assert zi.maximum(src, case.region) == src[case.inside].max()
    assert type(zi.minimum(src)) is (float if dtype == np.float32 else int)


@given(case=cases(2), dtype=st.sampled_from([np.uint8, np.uint16, np.float32]), masked=st.booleans())
def test_mean(case, dtype, masked):
    src, mask = case.array(0, dtype), case.mask(1)
    pixels = src[case.inside][mask[case.inside] != 0] if masked else src[case.inside]
    found = zi.mean(src, region=case.region, mask=mask if masked else None)
    if pixels.size == 0:
        assert found == 0
    elif dtype == np.float32:
        largest = float(np.abs(pixels).max())
        assert found == pytest.approx(pixels.mean(dtype=np.float64), rel=1e-6, abs=largest * 1e-5)
    else:
        assert found == int(pixels.sum(dtype=np.int64)) // pixels.size


@given(case=cases(2), dtype=st.sampled_from([np.uint8, np.uint16, np.float32]))
def test_mean_std_dev(case, dtype):
    src, mask = case.array(0, dtype), case.mask(1)
    area = np.ascontiguousarray(src[case.inside])
    if dtype == np.uint16:
        area = area.view(np.uint8)[:, : case.width]
    pixels = area[mask[case.inside] != 0].astype(np.float64)
    found = zi.mean_std_dev(src, mask, region=case.region)
    assert isinstance(found, zi.MeanStdDev)
    if pixels.size == 0:
        assert found == (0, 0)
    else:
        slack = float(np.abs(pixels).max()) * (1e-4 if dtype == np.float32 else 1e-9)
        assert found.mean == pytest.approx(pixels.mean(), rel=1e-9, abs=slack)
        assert found.std_dev == pytest.approx(pixels.std(), rel=1e-4 if dtype == np.float32 else 1e-9, abs=slack)


@given(case=cases(2), dtype=st.sampled_from([np.uint8, np.float32]))
def test_min_max_index(case, dtype):
    src, mask = case.array(0, dtype), case.mask(1)
    selected = np.zeros(src.shape, bool)
    selected[case.inside] = mask[case.inside] != 0
    if not selected.any():
        with pytest.raises(zi.IppError) as raised:
            zi.min_max_index(src, mask, region=case.region)
        assert (raised.value.code, raised.value.name) == (1, "ippStsNoOperation")
        return
    places = np.argwhere(selected)
    pixels = src[selected]
    found = zi.min_max_index(src, mask, region=case.region)
    assert found == (
        pixels.min(),
        tuple(places[pixels.argmin()]),
        pixels.max(),
        tuple(places[pixels.argmax()]),
    )


# --- connected pixels


def connected(equal, seed):
    reached = np.zeros_like(equal)
    reached[seed] = True
    while True:
        grown = reached.copy()
        grown[1:] |= reached[:-1]
        grown[:-1] |= reached[1:]
        grown[:, 1:] |= reached[:, :-1]
        grown[:, :-1] |= reached[:, 1:]
        grown &= equal
        if (grown == reached).all():
            return reached
        reached = grown


@given(case=cases(1), dtype=st.sampled_from([np.uint8, np.uint16, np.int32, np.float32]), value=st.integers(0, 3))
def test_flood_fill(case, dtype, value):
    image = case.array(0, dtype, values=[1, 1, 1, 2])
    area = image[case.inside]
    start = (int(case.random.integers(case.height)), int(case.random.integers(case.width)))
    row, column = case.inside[0].start, case.inside[1].start
    filled = connected(area == area[start], start)
    expected = image.copy()
    if area[start] == value:
        wanted = (0, 0, (0, 0, 0, 0))
    else:
        expected[case.inside][filled] = value
        rows, columns = np.nonzero(filled.any(axis=1))[0], np.nonzero(filled.any(axis=0))[0]
        box = (row + rows[0], column + columns[0], rows[-1] - rows[0] + 1, columns[-1] - columns[0] + 1)
        wanted = (filled.sum(), value, box)
    found = zi.flood_fill(image, (row + start[0], column + start[1]), value, region=case.region)
    assert found == wanted
    assert_same_bits(image, expected)
