"""Which arrays are used in place, which are refused and how, and what copy=True does with them."""

import ast
import inspect
import pathlib
import pickle

import numpy as np
import pytest
from hypothesis import given
from hypothesis import strategies as st

import zorvan_ipp as zi

functions = {name: getattr(zi, name) for name in zi.__all__ if inspect.isbuiltin(getattr(zi, name))}


def image(rows=20, columns=30, dtype=np.uint8):
    return np.random.default_rng(1).integers(0, 256, (rows, columns)).astype(dtype)


# --- regions


@pytest.mark.parametrize(
    "region",
    [
        (-1, 0, 3, 3),
        (0, -1, 3, 3),
        (18, 0, 3, 3),
        (0, 28, 3, 3),
        (2**62, 0, 2**62, 3),
        (0, 2**62, 3, 2**62),
        (-(2**63), 0, 3, 3),
        (0, 0, 2**63 - 1, 2**63 - 1),
    ],
)
def test_region_outside(region):
    for call in (
        lambda: zi.erode(image(), region=region),
        lambda: zi.copy(image(), np.zeros((40, 50), np.uint8), region=region),
        lambda: zi.copy(np.zeros((40, 50), np.uint8), image(), region=region),
        lambda: zi.fill(image(), 1, region, np.ones((40, 50), bool)),
        lambda: zi.mean(np.zeros((40, 50), np.uint8), region, image()),
        lambda: zi.flood_fill(image(), (0, 0), 1, region=region),
    ):
        with pytest.raises(zi.IppError, match="leaves (src|out|image|mask) of shape") as raised:
            call()
        assert (raised.value.code, raised.value.name) == (29, "ippStsWrongIntersectROI")


@given(
    shape=st.tuples(st.integers(1, 6), st.integers(1, 6)),
    region=st.tuples(*[st.integers(-2, 7)] * 4),
)
def test_every_region(shape, region):
    row, column, height, width = region
    array = np.zeros(shape, np.uint8)
    fits = row >= 0 and column >= 0 and row + height <= shape[0] and column + width <= shape[1]
    if fits and height >= 1 and width >= 1:
        zi.fill(array, 1, region)
        assert array.sum() == height * width and (array[row : row + height, column : column + width] == 1).all()
    else:
        with pytest.raises(zi.IppError):
            zi.fill(array, 1, region)
        assert not array.any()


def test_region_without_pixels():
    for region in ((0, 0, 0, 3), (0, 0, 3, 0), (0, 0, -1, 3), (0, 0, -(2**63), -(2**63))):
        with pytest.raises(zi.IppError, match="has no pixels") as raised:
            zi.invert(image(), region=region)
        assert raised.value.code == -6
    with pytest.raises(zi.IppError, match="has no pixels"):
        zi.invert(np.zeros((0, 5), np.uint8))


@pytest.mark.parametrize("region", [(1, 2, 3), 5, "abcd", (1.0, 2, 3, 4), (1, 2, 3, 4, 5)])
def test_region_of_other_things(region):
    with pytest.raises(TypeError, match=r"region must be a tuple \(row, column, height, width\)"):
        zi.invert(image(), region=region)
    with pytest.raises(OverflowError):
        zi.invert(image(), region=(2**70, 0, 1, 1))


def test_numpy_numbers_name_regions():
    region = np.array([1, 2, 3, 4])
    np.testing.assert_array_equal(zi.copy(image(), region=region), image()[1:4, 2:6])
    np.testing.assert_array_equal(zi.copy(image(), region=list(region)), image()[1:4, 2:6])


def test_rows_beyond_the_library():
    """The stride has 32 bits. (The pages of these zeros are never accessed.)"""
    with pytest.raises(ValueError, match="src is too large"):
        zi.minimum(np.zeros((1, 2**29), np.float32))


def test_smaller_companion_is_refused():
    with pytest.raises(zi.IppError, match="leaves b of shape"):
        zi.add(image(20, 30), image(20, 29))
    with pytest.raises(zi.IppError, match="leaves out of shape"):
        zi.add(image(20, 30), image(20, 30), out=image(19, 30))


# --- arrays that are refused


def unusable():
    whole = image(40, 60)
    return {
        "padded": whole[:20, :30],
        "reversed rows": image()[::-1],
        "reversed columns": image()[:, ::-1],
        "every second": whole[::2, ::2],
        "column-major": np.asfortranarray(image()),
        "broadcast": np.broadcast_to(image()[:1], (20, 30)),
    }


@pytest.mark.parametrize("kind", unusable())
def test_gaps_are_refused(kind):
    array = unusable()[kind]
    with pytest.raises(ValueError, match="src must have rows without gaps.*region=.*ascontiguousarray.*copy=True"):
        zi.invert(array)
    with pytest.raises(ValueError, match="out must have rows without gaps"):
        zi.invert(image(), out=array)
    np.testing.assert_array_equal(zi.invert(array, copy=True), ~array)


@pytest.mark.parametrize(
    "dtype", [np.int8, np.uint32, np.int64, np.float16, np.float64, np.complex64, bool, "S3", object]
)
def test_other_types_are_refused(dtype):
    array = image().astype(dtype)
    with pytest.raises(TypeError, match="src must be an array of uint8 or float32, not of .*astype"):
        zi.erode(array)
    with pytest.raises(TypeError, match="out must be an array of uint8, not of"):
        zi.erode(image(), out=array)


def test_other_byte_order_is_refused():
    array = image().astype(">i2")
    with pytest.raises(ValueError, match="bytes in the other order.*astype.*copy=True"):
        zi.laplace(array)
    np.testing.assert_array_equal(zi.laplace(array, copy=True), zi.laplace(array.astype(np.int16)))


def test_read_only_destination_is_refused():
    frozen = image()
    frozen.flags.writeable = False
    with pytest.raises(ValueError, match="out is read-only"):
        zi.invert(image(), out=frozen)
    with pytest.raises(ValueError, match="image is read-only"):
        zi.fill(frozen, 1)
    np.testing.assert_array_equal(zi.invert(frozen), ~frozen)  # it can be read
    was = frozen.copy()
    filled = zi.fill(frozen, 1, copy=True)
    assert (filled == 1).all() and (frozen == was).all()


def test_dimensions():
    for shape in ((), (5,), (2, 3, 4)):
        with pytest.raises(ValueError, match="src must have two dimensions"):
            zi.erode(np.zeros(shape, np.uint8))


def test_no_array():
    for thing in ([[1, 2], [3, 4]], 5, None, "x", memoryview(b"abcd")):
        with pytest.raises(TypeError, match="src must be a numpy array"):
            zi.erode(thing)
    np.testing.assert_array_equal(zi.erode([[1.0, 2.0]], copy=True), [[1.0, 1.0]])


def test_types_must_agree():
    with pytest.raises(TypeError, match="b must be an array of uint8, not of float32"):
        zi.add(image(), image(dtype=np.float32))


def test_masked_arrays_are_refused():
    masked = np.ma.array(image(), mask=image() < 100)
    for copy in (False, True):
        with pytest.raises(TypeError, match="mask would be lost: pass src.data, with mask=~src.mask"):
            zi.invert(masked, copy=copy)
    found = zi.min_max_index(masked.data, mask=~masked.mask)
    assert (found.min, found.max) == (masked.min(), masked.max())


def test_numbers_are_refused():
    for copy in (False, True):
        for number in (3, np.uint8(3)):
            with pytest.raises(TypeError, match="b must be a numpy array, not the number 3: add_constant"):
                zi.add(image(), number, copy=copy)


def test_images_of_other_libraries_are_copied():
    class Image:
        def __array__(self, *arguments):
            return image()

        def __float__(self):
            raise TypeError("only images of one pixel are numbers")

    np.testing.assert_array_equal(zi.invert(Image(), copy=True), ~image())
    with pytest.raises(TypeError, match="src must be a numpy array, not .*Image: pass numpy.asarray"):
        zi.invert(Image())


# --- copy=True


def test_copy_of_sources():
    doubles = image().astype(np.float64)
    assert zi.erode(doubles, copy=True).dtype == np.float32
    np.testing.assert_array_equal(zi.erode(doubles, copy=True), zi.erode(doubles.astype(np.float32)))
    with pytest.raises(TypeError):  # no type of the operation takes them
        zi.erode(image().astype(np.complex64), copy=True)


def test_copied_destination_is_written_back():
    whole = np.zeros((40, 60), np.uint8)
    part = whole[5:25, 7:37]
    assert zi.invert(image(), out=part, copy=True) is part
    np.testing.assert_array_equal(part, ~image())
    assert whole.sum() == (~image()).sum(dtype=np.int64)
    backwards = image()[::-1]
    info = zi.flood_fill(backwards, (0, 0), 3, copy=True)
    assert backwards[0, 0] == 3 and info.area >= 1


def test_copies_only_when_asked():
    """In place, the call reads the caller's memory, so it reads changes by another thread."""
    src = image()
    result = zi.copy(src, region=(0, 0, 20, 30))
    assert not np.shares_memory(result, src)
    out = image()
    address = out.ctypes.data
    assert zi.invert(src, out=out) is out and out.ctypes.data == address


# --- shared memory


def test_overlap_is_refused():
    array = image(40, 30)
    for function in (zi.erode, zi.dilate, zi.open, zi.close, zi.laplace, zi.copy):
        with pytest.raises(ValueError, match="out shares memory with src"):
            function(array, out=array)
        with pytest.raises(ValueError, match="out shares memory with src"):
            function(array[:20], out=array[10:30])
    with pytest.raises(ValueError, match="out shares memory with b"):
        zi.add(image(), array[:20], out=array[1:21])
    with pytest.raises(ValueError, match="shares memory with mask"):
        zi.fill(array, 1, mask=array)
    zi.copy(array[:20], out=array[20:])  # adjacent rows share no memory


def test_same_memory_in_another_shape_is_refused():
    array = image(20, 30)
    with pytest.raises(ValueError, match="shares memory"):
        zi.add(array, image(20, 30), out=array.reshape(30, 20), region=(0, 0, 10, 10))


# --- values


def test_values_are_not_cut():
    for value in (-1, 256, 10**30):
        with pytest.raises(ValueError, match="value must be from 0 to 255"):
            zi.fill(image(), value)
    with pytest.raises(TypeError):
        zi.fill(image(), 1.5)
    with pytest.raises(ValueError, match="from -32768 to 32767"):
        zi.fill(image(dtype=np.int16), 40000)
    for value in (-1, 256, 2.5, float("nan")):
        with pytest.raises(ValueError, match="whole number from 0 to 255"):
            zi.compare(image(dtype=np.float32), "<", value)
    with pytest.raises(ValueError, match="comparison must be"):
        zi.compare(image(dtype=np.float32), "!=", 1)
    with pytest.raises(ValueError, match="size must be 3 or 5"):
        zi.laplace(image(), 4)
    with pytest.raises(ValueError, match="border must be"):
        zi.laplace(image(), border="wrap")
    for size in ((0, 3), (3, -1), (2**40, 3)):
        with pytest.raises(ValueError, match="size must be"):
            zi.erode(image(), size)
    for shape in ((0, 3), (3, -1), (2**40, 3)):
        with pytest.raises(ValueError, match="shape must be"):
            zi.empty(shape)
    with pytest.raises(TypeError, match="dtype must be"):
        zi.empty((3, 3), np.float64)
    with pytest.raises(TypeError, match="dtype must be"):
        zi.convert(image(dtype=np.int32), np.int16)


# --- failures of the library


def test_errors():
    with pytest.raises(zi.IppError) as raised:
        zi.absolute(image())
    error = raised.value
    assert (error.code, error.name, error.message) == (
        -59,
        "ippStsDataTypeErr",
        "Data type is incorrect or not supported",
    )
    assert isinstance(error, ValueError)
    with pytest.raises(zi.IppError) as raised:
        zi.flood_fill(image(), (20, 0), 1)
    assert raised.value.code == -11
    with pytest.raises(zi.IppError) as raised:  # a mask of 2**31 ones and more
        zi.erode(image(), (2**16, 2**16))
    assert (raised.value.code, raised.value.name) == (None, None) and raised.value.message == "invalid length"


def test_warnings_keep_the_result():
    a, zeros = image(), np.zeros((20, 30), np.uint8)
    with pytest.warns(zi.IppWarning) as caught:
        result = zi.divide(a, zeros)
    np.testing.assert_array_equal(result, np.where(a == 0, 0, 255))
    assert (caught[0].message.code, caught[0].message.name) == (2, "ippStsDivByZero")
    assert caught[0].filename == __file__
    with pytest.warns(zi.IppWarning, match="Negative value") as caught:
        assert np.isnan(zi.square_root(np.full((2, 2), -1, np.float32))).all()
    assert caught[0].message.code == 3


# --- arguments


def test_arguments():
    with pytest.raises(TypeError, match=r"erode\(\) is missing the argument 'src'"):
        zi.erode()
    with pytest.raises(TypeError, match=r"erode\(\) got an unexpected keyword argument 'sice'"):
        zi.erode(image(), sice=(3, 3))
    with pytest.raises(TypeError, match=r"erode\(\) got multiple values for argument 'src'"):
        zi.erode(image(), src=image())
    with pytest.raises(TypeError, match=r"erode\(\) takes at most 5 arguments \(6 given\)"):
        zi.erode(*[image()] * 6)
    zi.erode(image(), **{"".join(["si", "ze"]): (3, 3)})


@pytest.mark.parametrize("name", functions)
def test_documentation(name):
    """The documentation and the type hints of each function have all parameters."""
    function = functions[name]
    signature = inspect.signature(function)
    for parameter in signature.parameters:
        described = f"\n{parameter}: ", f"\n{parameter}, ", f", {parameter}: "
        assert any(text in function.__doc__ for text in described)

    hints = ast.parse((pathlib.Path(zi.__file__).parent / "_binding.pyi").read_text())
    (hint,) = [node for node in hints.body if isinstance(node, ast.FunctionDef) and node.name == name]
    defaults = [inspect.Parameter.empty] * (len(hint.args.args) - len(hint.args.defaults))
    defaults += [ast.literal_eval(default) for default in hint.args.defaults]
    assert [(p.name, p.default) for p in signature.parameters.values()] == [
        (argument.arg, default) for argument, default in zip(hint.args.args, defaults)
    ]


def test_every_function_is_hinted_and_shown():
    hints = ast.parse((pathlib.Path(zi.__file__).parent / "_binding.pyi").read_text())
    hinted = {node.name for node in hints.body if isinstance(node, ast.FunctionDef)}
    from zorvan_ipp import _binding

    defined = {name for name in dir(_binding) if inspect.isbuiltin(getattr(_binding, name))}
    assert hinted == defined == set(functions)


# --- pickles: work is sent to other processes by name, results and failures come back as they are


def test_pickles():
    for function in functions.values():
        assert pickle.loads(pickle.dumps(function)) is function
    results = [
        zi.mean_std_dev(image(), image()),
        zi.min_max_index(image(), image()),
        zi.flood_fill(image(), (0, 0), 1),
    ]
    for result in results:
        back = pickle.loads(pickle.dumps(result))
        assert back == result and type(back) is type(result)
    error = zi.IppError(-6, "ippStsSizeErr", "Incorrect value for data size")
    back = pickle.loads(pickle.dumps(error))
    assert (back.code, back.name, back.message) == (error.code, error.name, error.message)
