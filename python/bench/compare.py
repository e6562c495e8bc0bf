#!/usr/bin/env python3
"""A table of times of the package, numpy and scipy.ndimage, on the same arrays, with results into existing arrays.

    compare.py [64x64] [640x480] [4096x4096]
"""

import datetime
import platform
import re
import sys
import time
import timeit

import numpy as np
import scipy
import scipy.ndimage as ndimage

import zorvan_ipp as zi

KERNEL = np.array([[-1, -1, -1], [-1, 8, -1], [-1, -1, -1]])


def operations(width, height):
    """Name, the package's call, the other call."""
    random = np.random.default_rng(1)
    shape = (height, width)
    a, b = random.integers(1, 255, (2, *shape), dtype=np.uint8)  # without an extreme that ends a search early
    f, g = random.random((2, *shape), dtype=np.float32) * 255 + 1
    words, whole = random.integers(-1000, 1000, shape, dtype=np.int16), random.integers(-300, 600, shape, dtype=np.int32)
    mask = random.random(shape) < 0.5
    byte, real, word, truth = np.empty_like(a), np.empty_like(f), np.empty_like(words), np.empty(shape, bool)
    row, column, high, wide = region = (height // 4, width // 4, height // 2, width // 2)
    inside = np.s_[row : row + high, column : column + wide]
    yield "empty call: fill of 1 pixel", lambda: zi.fill(byte, 7, (0, 0, 1, 1)), lambda: np.copyto(byte[:1, :1], 7)
    yield "copy, uint8", lambda: zi.copy(a, byte), lambda: np.copyto(byte, a)
    yield "copy, masked", lambda: zi.copy(a, byte, None, mask), lambda: np.copyto(byte, a, where=mask)
    yield "copy, region", lambda: zi.copy(a, byte, region), lambda: np.copyto(byte[inside], a[inside])
    yield "fill, uint8", lambda: zi.fill(byte, 7), lambda: byte.fill(7)
    yield "convert, int32 to uint8", lambda: zi.convert(whole, np.uint8, byte), lambda: np.clip(
        whole, 0, 255, out=byte, casting="unsafe"
    )
    yield "convert, int32 to float32", lambda: zi.convert(whole, np.float32, real), lambda: np.copyto(
        real, whole, casting="same_kind"
    )
    for name in ("add", "subtract", "multiply"):
        ours, theirs = getattr(zi, name), getattr(np, name)
        yield f"{name}, uint8 (numpy's wraps)", lambda: ours(a, b, byte), lambda: theirs(a, b, out=byte)
        yield f"{name}, float32", lambda: ours(f, g, real), lambda: theirs(f, g, out=real)
    yield "divide, float32", lambda: zi.divide(f, g, real), lambda: np.divide(f, g, out=real)
    yield "square, float32", lambda: zi.square(f, real), lambda: np.square(f, out=real)
    yield "square_root, float32", lambda: zi.square_root(f, real), lambda: np.sqrt(f, out=real)
    yield "absolute, float32", lambda: zi.absolute(f, real), lambda: np.absolute(f, out=real)
    yield "add_constant, uint8", lambda: zi.add_constant(byte, 3), lambda: np.add(byte, 3, out=byte)
    yield "bitwise_and", lambda: zi.bitwise_and(a, b, byte), lambda: np.bitwise_and(a, b, out=byte)
    yield "invert", lambda: zi.invert(a, byte), lambda: np.invert(a, out=byte)
    yield "compare, float32", lambda: zi.compare(f, ">", 100, byte), lambda: np.greater(f, 100, out=truth)
    yield "minimum, uint8", lambda: zi.minimum(a), lambda: a.min()
    yield "maximum, float32", lambda: zi.maximum(f), lambda: f.max()
    yield "mean, uint8", lambda: zi.mean(a), lambda: a.mean()
    yield "mean, masked", lambda: zi.mean(a, None, mask), lambda: a[mask].mean()
    yield "mean_std_dev, masked", lambda: zi.mean_std_dev(a, mask), lambda: (a[mask].mean(), a[mask].std())
    yield "min_max_index, masked", lambda: zi.min_max_index(a, mask), lambda: (
        np.argmin(np.where(mask, a, 255)),
        np.argmax(np.where(mask, a, 0)),
    )
    for size in ((3, 3), (9, 9)):
        name = "x".join(map(str, size))
        yield f"erode {name}, uint8", lambda: zi.erode(a, size, byte), lambda: ndimage.grey_erosion(a, size, output=byte)
    yield "open 3x3, uint8", lambda: zi.open(a, (3, 3), byte), lambda: ndimage.grey_opening(a, (3, 3), output=byte)
    yield "erode 3x3, float32", lambda: zi.erode(f, (3, 3), real), lambda: ndimage.grey_erosion(f, (3, 3), output=real)
    yield "laplace 3x3, uint8", lambda: zi.laplace(a, 3, out=byte), lambda: ndimage.convolve(a, KERNEL, byte, "nearest")
    yield "laplace 3x3, int16", lambda: zi.laplace(words, 3, out=word), lambda: ndimage.convolve(
        words, KERNEL, word, "nearest"
    )
    yield "laplace 3x3, float32", lambda: zi.laplace(f, 3, out=real), lambda: ndimage.convolve(f, KERNEL, real, "nearest")


def runs(call):
    """A timer of the call, and the number of calls in about a hundredth of a second."""
    timer = timeit.Timer(call)
    return timer, max(1, int(0.01 / max(min(timer.repeat(3, 1)), 1e-7)))


def seconds(ours, theirs):
    """The shortest times of both, measured alternately, so that other load affects both."""
    pairs = [runs(ours), runs(theirs)]
    found = [[], []]
    start = time.monotonic()
    while len(found[0]) < 3 or (len(found[0]) < 25 and time.monotonic() - start < 2):
        for (timer, number), times in zip(pairs, found):
            times.append(timer.timeit(number) / number)
    return map(min, found)


def text(duration):
    digits = 2 if duration < 1e-5 else 1 if duration < 1e-3 else 0
    return f"{duration * 1e6:.{digits}f}"


def main():
    processor = re.search("model name.*: (.*)", open("/proc/cpuinfo").read()).group(1)
    print(f"{processor}; Python {platform.python_version()}, numpy {np.__version__}, scipy {scipy.__version__};", end=" ")
    print(f"{datetime.date.today()}\n")
    sizes = [tuple(map(int, size.split("x"))) for size in sys.argv[1:] or ("64x64", "640x480", "4096x4096")]
    for width, height in sizes:
        print(f"| {width}x{height} | zorvan_ipp, µs | numpy or scipy, µs | times |\n|---|---:|---:|---:|")
        for name, ours, theirs in operations(width, height):
            own, other = seconds(ours, theirs)
            print(f"| {name} | {text(own)} | {text(other)} | {other / own:.1f} |", flush=True)
        print()


if __name__ == "__main__":
    main()
